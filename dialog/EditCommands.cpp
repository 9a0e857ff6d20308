// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/EditCommands.h"

#include "dialog/DialogTemplate.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"

using namespace Id;

// Undo and Redo by menu or key leave the modified flag alone, by button they set it; Copy sets it.
CommandRows EditCommands(ProfileSession* session, CGridControl* grid) {
    using S = ProfileSession;
    using enum MenuPlace;
    constexpr bool kMarks = true;
    const auto open = [session] { session->Open(); };
    const auto save = [session] { session->Save(); };
    const auto save_as = [session] { session->SaveAs(); };
    const auto undo = [session] { session->Undo(); };
    const auto redo = [session] { session->Redo(); };
    const auto copy = [grid] { grid->CopySelection(); };
    const auto paste = [grid] { grid->PasteSelection(); };
    return {
        {kRemove, [=] { session->RemoveRows(grid->SelectedRows()); }, &S::canRemove},
        {kEdition, [=] { session->SetEdition(!session->isEdition()); }, &S::canEditCoefficients},
        {kAdjust, [=] { session->Adjust(); }, &S::canEditCoefficients},
        {kOpen, open, &S::canOpen},
        {kSave, save, &S::canSave},
        {kSaveAs, save_as, &S::canSaveAs},
        {kUndo, undo, &S::canUndo, kMarks},
        {kRedo, redo, &S::canRedo, kMarks},
        {kCopy, copy, &S::canCopy, kMarks},
        {kPaste, paste, &S::canPaste, kMarks},
        {kMenuOpen, open, &S::canOpen, !kMarks, u"Ctrl+O",
         u"Ouvre un fichier, qui remplace toutes les lignes", Files, u"Ouvrir"},
        // Asks for a path if there is none.
        {kMenuSave, save, &S::canSaveAs, !kMarks, u"Ctrl+S",
         u"Enregistre dans le fichier du profil", Files, u"Enregistrer"},
        {kMenuSaveAs, save_as, &S::canSaveAs, !kMarks, u"Ctrl+Shift+S",
         u"Enregistre dans un autre fichier", Files, u"Enregistrer sous"},
        {kMenuUndo, undo, &S::canUndo, !kMarks, u"Ctrl+Z", u"Annule la dernière modification",
         History, u"Annuler"},
        {kMenuRedo, redo, &S::canRedo, !kMarks, u"Ctrl+Y", u"Refait la modification annulée",
         History, u"Refaire"},
        {kMenuCopy, copy, &S::canCopy, kMarks, u"Ctrl+C", u"Copie la partie choisie d'une colonne",
         Clipboard, u"Copier"},
        {kMenuPaste, paste, &S::canPaste, kMarks, u"Ctrl+V",
         u"Colle dans les cellules à partir de la première choisie", Clipboard, u"Coller"},
    };
}
