// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgCalculate.h"

#include "chart/CGraphControl.h"
#include "dialog/NumberField.h"
#include "profiles/ProfileSession.h"
#include "profiles/RowCalculation.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;

struct OperationChoice {
    Operation operation;
    QStringView caption;
    QStringView a = {};  ///< captions of the fields
    QStringView b = {};
};

constexpr OperationChoice kOperations[] = {
    {Operation::Multiply, u"Multiplier par", u"&Facteur"},
    {Operation::Add, u"Ajouter", u"&Nombre à ajouter"},
    {Operation::Set, u"Remplacer par", u"&Nouveau nombre"},
    {Operation::Linear, u"Ligne droite du premier au dernier"},
    {Operation::Limit, u"Limiter à un intervalle", u"&Minimum", u"Ma&ximum"},
    {Operation::Round, u"Arrondir", u"&Décimales"},
};

constexpr double kMaxDecimals = 12.0;

QString RowsText(const QList<int>& rows, int all) {
    if (rows.size() == all)
        return u"toutes (%1)"_s.arg(all);
    return u"%1 choisies, de %2 à %3"_s.arg(rows.size()).arg(rows.first()).arg(rows.last());
}

}  // namespace

CDlgCalculate::CDlgCalculate(ProfileSession* session, CGraphControl* chart, const QList<int>& rows,
                             QWidget* parent)
    : PreviewDialog(u"Calculer"_s, chart, parent),
      m_session(session),
      m_rows(rows),
      m_indices(rows.size()) {
    std::transform(rows.begin(), rows.end(), m_indices.begin(), [](int row) { return row - 1; });
    form().addRow(u"Lignes :"_s, new QLabel(RowsText(rows, session->table().RowCount()), this));
    if (session->facts().hasTimes())
        AddColumnChoice();
    AddOperations();
    m_a = AddField(u"&Facteur", 1.0);
    m_b = AddField(u"Ma&ximum", 1.0);
    StartOperation();
    Finish();
    m_a->setFocus();
    m_a->selectAll();
}

void CDlgCalculate::AddColumnChoice() {
    auto* const choice = new QHBoxLayout;
    auto* const values = new QRadioButton(u"&Valeurs"_s, this);
    m_times = new QRadioButton(u"&Temps"_s, this);
    values->setChecked(true);
    choice->addWidget(values);
    choice->addWidget(m_times);
    choice->addStretch();
    form().addRow(u"Colonne :"_s, choice);
    connect(m_times, &QRadioButton::toggled, this, &CDlgCalculate::StartOperation);
}

void CDlgCalculate::AddOperations() {
    m_operation = new QComboBox(this);
    for (const OperationChoice& one : kOperations) {
        if (CanCalculate(*m_session, one.operation))
            m_operation->addItem(one.caption.toString(), static_cast<int>(one.operation));
    }
    form().addRow(u"&Opération :"_s, m_operation);
    connect(m_operation, &QComboBox::currentIndexChanged, this, &CDlgCalculate::StartOperation);
}

Operation CDlgCalculate::operation() const {
    return static_cast<Operation>(m_operation->currentData().toInt());
}

int CDlgCalculate::column() const {
    return m_times != nullptr && m_times->isChecked() ? kLabel : kValue;
}

std::vector<double> CDlgCalculate::ColumnNumbers() const {
    const ChartItems& items = chart().document().items;
    const auto numbers = items.Group(column() == kLabel ? 0 : items.GroupCount() - 1);
    return {numbers.begin(), numbers.end()};
}

// Fields and numbers that the operation starts with: they change nothing, apart from rounding.
void CDlgCalculate::StartOperation() {
    const auto* const choice =
        std::find_if(std::begin(kOperations), std::end(kOperations),
                     [this](const OperationChoice& one) { return one.operation == operation(); });
    const std::vector<double> all = ColumnNumbers();
    const auto of_row = [&all](qsizetype row) { return all[static_cast<size_t>(row)]; };
    double low = of_row(m_indices.first());
    double high = low;
    for (const qsizetype row : std::as_const(m_indices)) {
        low = std::min(low, of_row(row));
        high = std::max(high, of_row(row));
    }
    const double start = operation() == Operation::Multiply ? 1.0
                         : operation() == Operation::Set    ? of_row(m_indices.first())
                         : operation() == Operation::Limit  ? low
                         : operation() == Operation::Round  ? 2.0
                                                            : 0.0;
    for (const auto& [field, caption, number] :
         {std::tuple(m_a, choice->a, start), std::tuple(m_b, choice->b, high)}) {
        const QSignalBlocker quiet(field);
        field->SetNumber(number);
        form().setRowVisible(field, !caption.isEmpty());
        if (!caption.isEmpty())
            Rename(field, caption);
    }
    Update();
}

QString CDlgCalculate::FieldFault() const {
    for (NumberField* const field : {m_a, m_b}) {
        if (form().isRowVisible(field) && !field->number())
            return field->accessibleName() + u" : entrez un nombre."_s;
    }
    const auto [what, a, b] = calculation();
    if (what == Operation::Limit && a > b)
        return u"Le minimum est plus grand que le maximum."_s;
    if (what == Operation::Round && (a < 0.0 || a > kMaxDecimals || a != std::trunc(a)))
        return m_a->accessibleName() + u" : entrez un nombre entier de 0 à 12."_s;
    return {};
}

Calculation CDlgCalculate::calculation() const {
    return {operation(), m_a->number().value_or(0.0), m_b->number().value_or(0.0)};
}

// The two rows are calculated as all will be, so that their very texts are shown.
QList<PreviewDialog::Change> CDlgCalculate::Changes() const {
    const ProfileTable& table = m_session->table();
    QStringList before;
    for (const int row : {m_rows.first(), m_rows.last()})
        before.append(table.CellText(row, column()));
    QStringList after = {u"–"_s, u"–"_s};
    if (FieldFault().isEmpty()) {
        for (qsizetype i = 0; i < before.size(); ++i) {
            const auto result = Calculate(calculation(), {before[i]}, {0});
            if (const auto* const texts = std::get_if<QStringList>(&result))
                after[i] = texts->first();
        }
    }
    QList<Change> changes;
    for (const auto& [row, i] : {std::pair(m_rows.first(), 0), std::pair(m_rows.last(), 1)}) {
        const QString label = table.CellText(row, kLabel);
        const QString unit = m_times != nullptr ? u" h"_s : QString();
        const QString place = column() == kLabel ? QString() : u" ("_s + label + unit + u')';
        changes.append({u"Ligne %1"_s.arg(row) + place, before[i], after[i]});
    }
    return changes;
}

PreviewDialog::Result CDlgCalculate::Preview() {
    Result result = {FieldFault(), Changes(), {}};
    if (!result.fault.isEmpty())
        return result;
    const ChartItems& items = chart().document().items;
    const bool has_abscissa = column() == kValue && items.GroupCount() == 2;
    std::vector<double> numbers =
        CalculateNumbers(calculation(), ColumnNumbers(), m_indices,
                         has_abscissa ? items.Group(0) : std::span<const double>());
    for (int group = 0; group < items.GroupCount(); ++group) {
        const auto as_it_is = items.Group(group);
        result.chart.emplace_back(as_it_is.begin(), as_it_is.end());
    }
    result.chart[column() == kLabel ? 0 : result.chart.size() - 1] = std::move(numbers);
    return result;
}

bool CDlgCalculate::Apply() {
    return CalculateRows(*m_session, column(), calculation(), m_rows);
}
