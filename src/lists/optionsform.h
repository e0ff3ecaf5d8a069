#pragma once

#include "columnvisibilitymodel.h"
#include "usersettings.h"

namespace pg::lists {

// What the options window edits, without widgets: it starts from the clerk's settings and
// the row list's columns, follows the clerk's choices, and on confirmation writes them back.
class OptionsForm
{
public:
    static const QString DefaultDesPag;
    static const QString ProposedDesAlt; // "Pagamento NNN Scadenze", proposed when switched on
    static const QString RestartNotice;

    // columns: the row list's columns in list order, with their current visibility.
    OptionsForm(const UserSettings &settings, const QList<ColumnChoice> &columns);

    // "Microsoft Word 97/2000" (editor 99) or another program with its path.
    bool useWordProcessor() const { return m_wordProcessor; }
    void setUseWordProcessor(bool on) { m_wordProcessor = on; }
    // The path box and its browse button are usable for the other program only.
    bool pathEnabled() const { return !m_wordProcessor; }
    QString editorPath() const { return m_editorPath; }
    void setEditorPath(const QString &path) { m_editorPath = path; }

    bool autoPrint() const { return m_autoPrint; }
    void setAutoPrint(bool on) { m_autoPrint = on; }

    QString fontName() const { return m_fontName; }
    int fontSize() const { return m_fontSize; }
    void setFont(const QString &name, int size);

    bool saveOnExit() const { return m_saveOnExit; }
    void setSaveOnExit(bool on) { m_saveOnExit = on; }
    bool raggruppa() const { return m_raggruppa; }
    void setRaggruppa(bool on) { m_raggruppa = on; }

    // chkModDescr: switched on, the descriptions show with the proposed texts; switched off
    // they are hidden.
    bool modDescr() const { return m_modDescr; }
    void setModDescr(bool on);
    bool descriptionsVisible() const { return m_modDescr; }
    QString desPag() const { return m_desPag; }
    void setDesPag(const QString &text) { m_desPag = text; }
    QString desAlt() const { return m_desAlt; }
    void setDesAlt(const QString &text) { m_desAlt = text; }
    // A double click in the first description puts the proposed text back.
    void resetDesPag() { m_desPag = DefaultDesPag; }

    // The company's CBI code (CUC) of the XML bank file, kept in capitals without blanks.
    QString cuc() const { return m_cuc; }
    void setCuc(const QString &code) { m_cuc = code.trimmed().toUpper(); }

    ColumnVisibilityModel &columns() { return m_columns; }

    // The settings with the clerk's choices applied to base.
    UserSettings applied(const UserSettings &base) const;
    // cmdGenera: the choices become the settings in use, the restart notice is shown and
    // the settings are written to the clerk's store.
    void confirm();

private:
    bool m_wordProcessor;
    QString m_editorPath;
    bool m_autoPrint;
    QString m_fontName;
    int m_fontSize;
    bool m_saveOnExit;
    bool m_raggruppa;
    bool m_modDescr;
    QString m_desPag;
    QString m_desAlt;
    QString m_cuc;
    ColumnVisibilityModel m_columns;
};

} // namespace pg::lists
