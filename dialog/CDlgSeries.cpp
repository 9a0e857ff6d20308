// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgSeries.h"

#include "base/Message.h"
#include "base/NumberText.h"
#include "chart/CGraphControl.h"
#include "dialog/NumberField.h"
#include "profiles/InsertPoints.h"
#include "profiles/ProfileSession.h"

#include <QComboBox>
#include <QFormLayout>
#include <QRadioButton>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kShapes[] = {u"Constante", u"Linéaire", u"Sinusoïde", u"Créneaux",
                                   u"Interpolé"};

enum class FieldRule { Any, AboveZero, PointCount, Percent };

// A field, the shapes that have it, and the part of the plan that it holds. The number of points is
// no double.
struct SeriesField {
    QStringView caption;
    std::initializer_list<SeriesShape> shapes;
    double start = 0.0;
    double SeriesPlan::*part = nullptr;
    FieldRule rule = FieldRule::Any;
};

using enum SeriesShape;

constexpr auto kAllShapes = {Constant, Linear, Sine, Pulse, Interpolated};
constexpr auto kConstant = {Constant};
constexpr auto kLinear = {Linear};
constexpr auto kSine = {Sine};
constexpr auto kPulse = {Pulse};
constexpr auto kPeriodic = {Sine, Pulse};

// The starting numbers make a day of 24 hours.
constexpr SeriesField kSeriesFields[] = {
    {u"&Début (h)", kAllShapes, 0.0, &SeriesPlan::start},
    {u"&Pas (h)", kAllShapes, 1.0, &SeriesPlan::step, FieldRule::AboveZero},
    {u"&Nombre de points", kAllShapes, 24.0, nullptr, FieldRule::PointCount},
    {u"&Valeur", kConstant, 0.0, &SeriesPlan::a},
    {u"P&remière valeur", kLinear, 0.0, &SeriesPlan::a},
    {u"D&ernière valeur", kLinear, 1.0, &SeriesPlan::b},
    {u"&Moyenne", kSine, 0.0, &SeriesPlan::a},
    {u"&Amplitude", kSine, 1.0, &SeriesPlan::b},
    {u"Valeur &basse", kPulse, 0.0, &SeriesPlan::a},
    {u"Valeur &haute", kPulse, 1.0, &SeriesPlan::b},
    {u"Péri&ode (h)", kPeriodic, 24.0, &SeriesPlan::period, FieldRule::AboveZero},
    {u"P&hase (degrés)", kSine, 0.0, &SeriesPlan::phase},
    {u"Part haute (&%)", kPulse, 50.0, &SeriesPlan::share, FieldRule::Percent},
};

QString RuleFault(FieldRule rule, double number) {
    switch (rule) {
        case FieldRule::Any: break;
        case FieldRule::AboveZero:
            if (number <= 0.0)
                return u"entrez un nombre plus grand que 0."_s;
            break;
        case FieldRule::PointCount:
            if (number < SeriesPlan::kMinCount || number > SeriesPlan::kMaxCount ||
                number != std::trunc(number))
                return u"entrez un nombre entier de 2 à 1 000 000."_s;
            break;
        case FieldRule::Percent:
            if (number < 0.0 || number > 100.0)
                return u"entrez un nombre de 0 à 100."_s;
            break;
    }
    return {};
}

QString PointText(const QString& time, const QString& value) {
    return time + u" h : "_s + value;
}

}  // namespace

CDlgSeries::CDlgSeries(ProfileSession* session, CGraphControl* chart, QWidget* parent)
    : PreviewDialog(u"Insérer une série"_s, chart, parent), m_session(session) {
    static_assert(std::size(kSeriesFields) == kFields);
    const ChartItems& items = chart->document().items;
    m_present = {{items.Group(0).begin(), items.Group(0).end()},
                 {items.Group(1).begin(), items.Group(1).end()}};
    AddModes();
    for (size_t i = 0; i < kFields; ++i) {
        if (kSeriesFields[i].part == &SeriesPlan::a && m_shape == nullptr)
            AddShapes();
        m_fields[i] = AddField(kSeriesFields[i].caption, kSeriesFields[i].start);
    }
    ShowFields();
    Finish();
    m_fields.front()->setFocus();
    m_fields.front()->selectAll();
}

void CDlgSeries::AddModes() {
    auto* const replaces = new QRadioButton(u"Remplacer &tous les points"_s, this);
    m_adds = new QRadioButton(u"A&jouter aux points"_s, this);
    replaces->setChecked(true);
    form().addRow(u"Action :"_s, replaces);
    form().addRow(QString(), m_adds);
    connect(m_adds, &QRadioButton::toggled, this, &CDlgSeries::Update);
}

void CDlgSeries::AddShapes() {
    m_shape = new QComboBox(this);
    for (const QStringView shape : kShapes)
        m_shape->addItem(shape.toString());
    // There is nothing to interpolate.
    if (m_present.times.empty())
        m_shape->removeItem(static_cast<int>(SeriesShape::Interpolated));
    form().addRow(u"&Forme :"_s, m_shape);
    connect(m_shape, &QComboBox::currentIndexChanged, this, [this] {
        ShowFields();
        Update();
    });
}

SeriesShape CDlgSeries::shape() const {
    return static_cast<SeriesShape>(m_shape->currentIndex());
}

void CDlgSeries::ShowFields() {
    for (size_t i = 0; i < kFields; ++i) {
        const auto& shapes = kSeriesFields[i].shapes;
        form().setRowVisible(m_fields[i],
                             std::find(shapes.begin(), shapes.end(), shape()) != shapes.end());
    }
}

QString CDlgSeries::FieldFault() const {
    for (size_t i = 0; i < kFields; ++i) {
        if (!form().isRowVisible(m_fields[i]))
            continue;
        const std::optional<double> number = m_fields[i]->number();
        const QString fault =
            number ? RuleFault(kSeriesFields[i].rule, *number) : u"entrez un nombre."_s;
        if (!fault.isEmpty())
            return m_fields[i]->accessibleName() + u" : "_s + fault;
    }
    return {};
}

// Of fields that are right.
SeriesPlan CDlgSeries::plan() const {
    SeriesPlan plan;
    plan.shape = shape();
    for (size_t i = 0; i < kFields; ++i) {
        const double number = m_fields[i]->number().value_or(0.0);
        const SeriesField& field = kSeriesFields[i];
        if (!form().isRowVisible(m_fields[i]))
            continue;
        if (field.rule == FieldRule::PointCount)
            plan.count = static_cast<int>(number);
        else
            plan.*field.part = field.rule == FieldRule::Percent ? number / 100.0 : number;
    }
    return plan;
}

PreviewDialog::Result CDlgSeries::Preview() {
    const ProfileTable& table = m_session->table();
    Result result = {FieldFault(), {}, {}};
    std::optional<PointNumbers> after;
    if (result.fault.isEmpty()) {
        after = SeriesNumbers(plan(), m_present);
        if (!after)
            result.fault = u"Un temps ou une valeur n'est pas un nombre fini."_s;
        else if (m_adds->isChecked())
            after = MergePoints(m_present, *after);
    }
    const auto present = [&table](int row) {
        return table.RowCount() == 0 ? u"–"_s
                                     : PointText(table.CellText(row, ProfileTable::kLabelColumn),
                                                 table.CellText(row, ProfileTable::kValueColumn));
    };
    const auto future = [&after](auto end) {
        return after ? PointText(NumberText7(*end(after->times)), NumberText7(*end(after->values)))
                     : u"–"_s;
    };
    const auto first = [](const auto& list) { return list.begin(); };
    const auto last = [](const auto& list) { return list.end() - 1; };
    const QString count = after ? QString::number(after->times.size()) : u"–"_s;
    result.changes = {{u"Premier point"_s, present(1), future(first)},
                      {u"Dernier point"_s, present(table.RowCount()), future(last)},
                      {u"Points"_s, QString::number(table.RowCount()), count}};
    if (after)
        result.chart = {std::move(after->times), std::move(after->values)};
    return result;
}

bool CDlgSeries::Apply() {
    const ProfileTable& table = m_session->table();
    const PointTexts present = {table.Column(ProfileTable::kLabelColumn),
                                table.Column(ProfileTable::kValueColumn)};
    const std::optional<PointTexts> series = MakeSeries(plan(), present);
    if (!series) {
        ShowMessage(u"Deux temps de la série seraient égaux.\nRien n'a été changé."_s);
        return false;
    }
    if (m_adds->isChecked()) {
        const InsertedPoints all = InsertPoints(present, *series);
        m_session->ReplaceRows(all.points.times, all.points.values);
        m_added_rows = all.rows;
    } else {
        m_session->ReplaceRows(series->times, series->values);
    }
    return true;
}
