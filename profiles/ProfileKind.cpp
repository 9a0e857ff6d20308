// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileKind.h"

namespace {

constexpr KindDescriptor kFunction = {
    .columns = 2,
    .headers = {u"Time", u"Value"},
    .pasted_headers = {u"Time", u"Value"},
    .read_keywords = {u"AZIMUT", u"HAUTEUR"},
    .write_keywords = {u"Value of time", u"Value of function"},
    .decimals = 2,
    .folder = u"Masques",
    .title_prefix = u" \n",
    .value_axis_title = u"Value of function",
    .index_axis_title = u"Value of time",
    .time_unit = u"h",
    .title_height = 15,
};

constexpr KindDescriptor kAnnual = {
    .rows = 12,
    .columns = 2,
    .labels = RowLabels::Months,
    .headers = {u"Mois", u"Coef. multiplicateur"},
    .pasted_headers = {QStringView(), u"Conso."},
    .column_widths = {70, 85},
    .header_height = 40,
    .default_value = 1.0,
    .coefficients = true,
    .typed_bound = 12.0F,
    .pasted_bound = 5.0F,
    .pasted_bound_message = u"L'une des valeur est négative\nou supérieure à 5 !",
    .read_keywords = {u"MOIS", u"COEFFICIENT"},
    .write_keywords = {u"MOIS", u"COEFFICIENT"},
    .decimals = 2,
    .folder = u"Profils/Annuel",
    .title_prefix = u"Profil Annuel : ",
    .value_axis_title = u"Coefficient Multiplicateur",
    .index_axis_title = u"Mois de l'année",
    .value_step = double{0.2F},
};

constexpr KindDescriptor kMonthly = {
    .rows = 12,
    .columns = 3,
    .labels = RowLabels::Months,
    .headers = {u"Mois", u"Besoin l/j", u"Profil Journalier"},
    .pasted_headers = {QStringView(), u"Conso.", u"Profil"},
    .column_widths = {70, 70, 100},
    .default_value = 1800.0,
    .read_keywords = {u"MOIS", u"CONSOMMATION"},
    .write_keywords = {u"MOIS", u"CONSOMMATION", u"PROFIL"},
    .folder = u"Profils/Mensuel",
    .title_prefix = u"Profil Mensuel : \n",
    .value_axis_title = u"Besoin journalier moyen l/j",
    .index_axis_title = u"Mois de l'année",
    .value_unit = u"l/j",
    .value_step = 250.0,
    .title_height = 22,
};

constexpr KindDescriptor kWeekly = {
    .rows = 7,
    .columns = 3,
    .labels = RowLabels::Weekdays,
    .headers = {u"Jour", u"Besoin l/j", u"Profil Journalier"},
    .pasted_headers = {QStringView(), u"Conso.", u"Profil"},
    .column_widths = {70, 70, 100},
    .default_value = 100.0,
    .read_keywords = {u"JOURS", u"CONSOMMATION"},
    .write_keywords = {u"JOURS", u"CONSOMMATION", u"PROFIL"},
    .fills_from_lists = false,
    .folder = u"Profils/Semaines",
    .save_renames = true,
    .title_prefix = u"Profil Hebdomadaire : \n",
    .value_axis_title = u"Besoin journalier moyen en l/j",
    .index_axis_title = u"Jours de la Semaine",
    .value_unit = u"l/j",
    .value_step = 20.0,
    .title_height = 22,
};

constexpr KindDescriptor kDaily = {
    .rows = 24,
    .columns = 2,
    .labels = RowLabels::Hours,
    .headers = {u"Heure", u"Répartition"},
    .pasted_headers = {QStringView(), u"Conso."},
    .default_value = 1.0,
    .coefficients = true,
    .typed_bound = 24.0F,
    .pasted_bound = 24.0F,
    .pasted_bound_message =
        u"L'une des valeur est négative\nou supérieure à la consommation\njournalière !",
    .read_keywords = {u"HEURES", u"COEFFICIENT"},
    .write_keywords = {u"HEURES", u"COEFFICIENT"},
    .decimals = 2,
    .folder = u"Profils/Journalier",
    .save_renames = true,
    .title_prefix = u"Profil Journalier : ",
    .value_axis_title = u"Coefficient Horaire",
    .index_axis_title = u"Heures de la Journée",
    .value_step = double{0.2F},
};

constexpr KindDescriptor kNoKind = {};

constexpr std::array<QStringView, 12> kMonths = {
    u"Janvier", u"Février", u"Mars",      u"Avril",   u"Mai",      u"Juin",
    u"Juillet", u"Août",    u"Septembre", u"Octobre", u"Novembre", u"Décembre"};

constexpr std::array<QStringView, 7> kWeekdays = {u"Lundi",    u"Mardi",  u"Mercredi", u"Jeudi",
                                                  u"Vendredi", u"Samedi", u"Dimanche"};

}  // namespace

const KindDescriptor& Describe(ProfileKind kind) {
    switch (kind) {
        case ProfileKind::Function: return kFunction;
        case ProfileKind::Annual: return kAnnual;
        case ProfileKind::Monthly: return kMonthly;
        case ProfileKind::Weekly: return kWeekly;
        case ProfileKind::Daily: return kDaily;
    }
    return kNoKind;
}

QStringList RowLabelTexts(ProfileKind kind) {
    QStringList texts;
    const KindDescriptor& facts = Describe(kind);
    switch (facts.labels) {
        case RowLabels::None: break;
        case RowLabels::Months:
            for (QStringView month : kMonths)
                texts.append(month.toString());
            break;
        case RowLabels::Weekdays:
            for (QStringView day : kWeekdays)
                texts.append(day.toString());
            break;
        case RowLabels::Hours:
            for (int hour = 0; hour < facts.rows; ++hour)
                texts.append(QString::number(hour) + QStringLiteral(" h"));
            break;
    }
    return texts;
}
