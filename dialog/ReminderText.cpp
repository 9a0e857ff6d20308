// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ReminderText.h"

#include "grid/PasteRules.h"
#include "profiles/EditHistory.h"
#include "profiles/PointReading.h"
#include "profiles/ProfileKind.h"

#include <QLocale>

#include <initializer_list>
#include <span>

using namespace Qt::StringLiterals;

namespace {

// What is not a command: how to do it and what it does.
struct Hint {
    QStringView how;
    QStringView does;
};

constexpr Hint kKeys[] = {
    {u"Tab, Shift+Tab", u"Cellule suivante, précédente"},
    {u"Ctrl+Tab, Ctrl+Shift+Tab", u"Quitte le tableau vers le graphique, vers l'arrière"},
    {u"Gauche, Droite, Début, Fin dans le graphique",
     u"Ligne précédente, suivante, première, dernière"},
    {u"Haut, Bas dans le graphique", u"Change la valeur d'une petite marque de l'axe"},
    {u"Enter", u"Valide la cellule et descend d'une ligne"},
    {u"Esc", u"Quitte la cellule sans la changer ; sinon, demande s'il faut abandonner"},
    {u"Menu, Shift+F10", u"Ouvre le menu"},
    {u"Ctrl+Ins, Shift+Ins", u"Copie, colle"},
};

constexpr Hint kMouse[] = {
    {u"Clic", u"Choisit une cellule, ou la ligne d'un point du graphique"},
    {u"Double clic", u"Modifie le texte d'une cellule"},
    {u"Glisser dans le tableau", u"Choisit plusieurs lignes"},
    {u"Glisser un point, une barre", u"Change la valeur ; le temps reste"},
    {u"Shift+glisser un point",
     u"Change aussi le temps, entre ses voisins ; sans Shift il revient où il était"},
    {u"Glisser entre graphique et tableau", u"Partage la largeur"},
    {u"Double clic entre graphique et tableau", u"Élargit le tableau, puis le remet"},
    {u"Clic droit", u"Ouvre le menu"},
    {u"Pointeur sur le graphique", u"Lit le temps, la valeur et le point le plus proche"},
    {u"Molette sur le graphique", u"Agrandit ou réduit le temps autour du pointeur"},
    {u"Shift+molette, glisser au bouton du milieu", u"Déplace la partie visible"},
    {u"Ctrl+molette", u"Agrandit ou réduit les valeurs d'une fonction"},
    {u"Double clic dans le graphique", u"Montre tout le graphique"},
};

QString Row(std::initializer_list<QStringView> cells) {
    QString row = u"<tr>"_s;
    for (const QStringView cell : cells)
        row += u"<td style='padding-right:14px'>"_s + cell.toString().toHtmlEscaped() + u"</td>"_s;
    return row + u"</tr>"_s;
}

// A line of space, the title, the rows.
QString Section(const QString& title, const QString& rows) {
    return u"<table><tr><td><br><b>"_s + title + u"</b></td></tr>"_s + rows + u"</table>"_s;
}

QString CommandsOf(const CommandRows& commands, const MenuPart& part) {
    QString rows;
    for (const Command& command : commands) {
        if (command.place == part.place && !command.help.isEmpty())
            rows += Row({command.caption, command.shortcut, command.help});
    }
    return rows;
}

QString Hints(std::span<const Hint> hints) {
    QString rows;
    for (const Hint& hint : hints)
        rows += Row({hint.how, hint.does});
    return rows;
}

QString Limits() {
    const QLocale french(QLocale::French);
    const auto bound = [&](ProfileKind kind) {
        return french.toString(static_cast<double>(Describe(kind).typed_bound));
    };
    const QString texts[] = {
        u"Annuler revient sur %1 modifications, sur %2 d'un profil annuel ou journalier."_s
            .arg(EditHistory::kMaxSteps)
            .arg(EditHistory::kTableRows),
        u"Copier prend %1 lignes d'une colonne, une seule ligne de la première."_s.arg(
            kMaxCopiedRows),
        u"Coller change des cellules et n'ajoute pas de lignes."_s,
        u"Un coefficient va jusqu'à %1 dans un profil annuel, jusqu'à %2 dans un profil journalier."_s
            .arg(bound(ProfileKind::Annual), bound(ProfileKind::Daily)),
        u"Une fonction garde au moins deux points."_s,
        u"Un texte ou un fichier donne au plus %1 points."_s.arg(french.toString(kMaxPoints)),
    };
    QString rows;
    for (const QString& text : texts)
        rows += Row({text});
    return rows;
}

}  // namespace

QString ReminderText(const CommandRows& commands) {
    QString menu;
    QString submenus;
    for (const MenuPart& part : kMenuParts) {
        const QString rows = CommandsOf(commands, part);
        if (part.submenu.isEmpty())
            menu += rows;
        else if (!rows.isEmpty())
            submenus += Section(u"Menu / "_s + part.submenu.toString(), rows);
    }
    QString keys;
    for (const Command& command : commands) {
        if (command.place == MenuPlace::None && !command.help.isEmpty())
            keys += Row({command.shortcut, command.help});
    }
    return Section(u"Menu"_s, menu) + submenus + Section(u"Clavier"_s, keys + Hints(kKeys)) +
           Section(u"Souris"_s, Hints(kMouse)) + Section(u"Limites"_s, Limits());
}
