#pragma once

#include <QMap>
#include <QString>

#include <memory>

class QSettings;

namespace pg {

// The format of the bank file of the credit transfers: the CBI XML message that the banks take
// for SEPA credit transfers, or the CBI "Bonifici" flat file.
enum class BankFileFormat : quint8 { SepaXml, CbiFlat };

// The clerk's preferences, kept per user under the program's name in the sections "Editor",
// "Printer", "Lista", "Colonne" and "Bonifici". Every value is stored as text and converted when
// read; a value that is missing or does not convert takes its default.
struct UserSettings
{
    // "Editor": 99 = the program's own print with its templates; any other value = the
    // external program of editorPath receives the document.
    quint8 editor = 99;
    QString editorPath;
    // "Printer": the chosen printer; "NOPRINTER" when none was ever chosen.
    QString deviceName = QStringLiteral("NOPRINTER");
    QString driverName = QStringLiteral("NOPRINTER");
    QString port = QStringLiteral("NOPRINTER");
    quint8 autoPrint = 0;
    // "Lista"
    QString fontName = QStringLiteral("Courier New");
    qint16 fontSize = 8;
    quint8 saveOnExit = 0;
    quint8 modDescr = 0;
    quint8 raggruppa = 0;
    QString desPag = fixed30(QStringLiteral("Vs.Fatt. NNNNNN/N del DD/DD/DD"));
    QString desAlt = fixed30(QStringLiteral("Pagamentio NNN Scadenze"));
    // The row list's columns as the clerk left them, saved on exit when saveOnExit is set:
    // "field=width" in the order shown, separated by ";". Empty: the list's own order.
    QString columnLayout;
    // "Colonne": column header text -> visibility, for the columns the clerk has set.
    QMap<QString, bool> columns;
    // "Bonifici": the format last confirmed in the file dialog (the XML message until the clerk
    // chooses the flat file: banks take SEPA credit transfers only so), and the company's CBI
    // code (CUC) that identifies it in the XML file; empty when the clerk never gave one.
    BankFileFormat formatoBonifici = BankFileFormat::SepaXml;
    QString cuc;

    // The two description patterns are always exactly 30 characters: padded or cut.
    static QString fixed30(const QString &text);

    void load(QSettings &store);
    void save(QSettings &store) const;
    // Writes the "Bonifici" section alone, leaving the others in the store as they are.
    void saveBonifici(QSettings &store) const;
    // Writes the column layout alone.
    void saveColumnLayout(QSettings &store) const;
    bool operator==(const UserSettings &other) const = default;

    // The store of the current user (the registry area the program always used on Windows),
    // or the ini file set by useStoreFile().
    static std::unique_ptr<QSettings> userStore();
    // Keeps the settings in an ini file instead of the user's store (tests, portable runs);
    // an empty path goes back to the user's store.
    static void useStoreFile(const QString &iniPath);
};

// The settings in use, read at start by the main window (pGetSettings) and written when the
// options are confirmed (pSaveSettings).
UserSettings &currentSettings();
void pGetSettings();
void pSaveSettings();
// Writes the "Bonifici" section of the settings in use: the file command remembers the format
// and the CUC without writing list and printer settings that are meant for the next start.
void pSaveBonifici();
// Writes the column layout of the settings in use (the list's columns on exit).
void pSaveColumnLayout();

} // namespace pg
