#pragma once

#include <QList>
#include <QString>

namespace pg {
struct UserSettings;
}

namespace pg::editor {

// One column that the row list of the main window can show: the TB_RIGHE column (also the
// column's key in the list), its header, its width in twips (0: the list's default width),
// its alignment and whether it is shown unless the clerk chose otherwise. The two further
// flags are kept as the table always had them.
struct ListColumn
{
    enum class Alignment { Left = 0, Right = 1 };

    QString field;
    QString header;
    qint16 width = 0;
    Alignment alignment = Alignment::Left;
    bool visible = true;
    bool accountLookup = false; // true for the columns read from the account master (Piva, ragsoc)
    bool available = true;      // true for every column
};

// LV_ConfigLista: the 22 columns in list order, with their default visibility.
const QList<ListColumn> &LV_ConfigLista();

// The table with each column's visibility taken from the clerk's settings (section
// "Colonne", keyed by the header text) where one is set.
QList<ListColumn> configuredColumns(const UserSettings &settings);

// Twips to pixels at the usual 15 twips a pixel.
int twipsToPixels(int twips);

} // namespace pg::editor
