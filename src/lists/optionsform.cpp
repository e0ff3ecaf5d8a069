#include "optionsform.h"

#include "core/prompter.h"
#include "startup/errortrap.h"

namespace pg::lists {

const QString OptionsForm::DefaultDesPag = QStringLiteral("Vs.Fatt. NNNNNN/N del DD/DD/DD");
const QString OptionsForm::ProposedDesAlt = QStringLiteral("Pagamento NNN Scadenze");
const QString OptionsForm::RestartNotice =
    QStringLiteral("Le modifiche saranno attive al prossimo riavvio del programma.");

OptionsForm::OptionsForm(const UserSettings &settings, const QList<ColumnChoice> &columns)
    : m_wordProcessor(settings.editor == 99)
    , m_editorPath(settings.editorPath)
    , m_autoPrint(settings.autoPrint != 0)
    , m_fontName(settings.fontName)
    , m_fontSize(settings.fontSize)
    , m_saveOnExit(settings.saveOnExit != 0)
    , m_raggruppa(settings.raggruppa != 0)
    , m_modDescr(settings.modDescr != 0)
    , m_desPag(settings.desPag.trimmed())
    , m_desAlt(settings.desAlt.trimmed())
    , m_cuc(settings.cuc)
{
    m_columns.setColumns(columns);
}

void OptionsForm::setFont(const QString &name, int size)
{
    m_fontName = name;
    m_fontSize = size;
}

void OptionsForm::setModDescr(bool on)
{
    m_modDescr = on;
    if (on) {
        m_desPag = DefaultDesPag;
        m_desAlt = ProposedDesAlt;
    }
}

UserSettings OptionsForm::applied(const UserSettings &base) const
{
    UserSettings s = base;
    if (m_wordProcessor) {
        s.editor = 99;
    } else {
        // Any value but 99 names the other program; one already chosen is kept.
        s.editor = base.editor == 99 ? 1 : base.editor;
        s.editorPath = m_editorPath;
    }
    s.autoPrint = m_autoPrint ? 1 : 0;
    if (!m_fontName.isEmpty()) {
        s.fontName = m_fontName;
        s.fontSize = qint16(qBound(1, m_fontSize, 32767));
    }
    s.saveOnExit = m_saveOnExit ? 1 : 0;
    s.raggruppa = m_raggruppa ? 1 : 0;
    s.modDescr = m_modDescr ? 1 : 0;
    s.desPag = UserSettings::fixed30(m_desPag);
    s.desAlt = UserSettings::fixed30(m_desAlt);
    s.cuc = m_cuc;
    for (const ColumnChoice &c : m_columns.columns())
        s.columns.insert(c.header, c.visible);
    return s;
}

void OptionsForm::confirm()
{
    underTrap(QStringLiteral("frmOptions!Sub cmdOK_Click()"), [&] {
        currentSettings() = applied(currentSettings());
        msgBox(RestartNotice, Buttons::Ok, Icon::Information);
        underTrap(QStringLiteral("frmMain!Sub pSaveSettings()"), [] { pSaveSettings(); });
    });
}

} // namespace pg::lists
