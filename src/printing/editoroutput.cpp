#include "editoroutput.h"

#include "printdocument.h"

#include "core/prompter.h"
#include "startup/paths.h"

#include <QDir>
#include <QProcess>

namespace pg::printing {

namespace {

// A title as a file name: letters, digits, '-' and '_' kept, anything else becomes '_'.
QString fileNameOf(const QString &title)
{
    QString name;
    for (const QChar c : title)
        name += c.isLetterOrNumber() || c == u'-' || c == u'_' ? c : QChar(u'_');
    return name.isEmpty() ? QStringLiteral("Distinta") : name;
}

} // namespace

EditorOutput::EditorOutput(const QString &program, const QString &directory, Launcher launcher)
    : m_program(program)
    , m_dir(paths::withTrailingSeparator(directory))
    , m_launch(std::move(launcher))
{
    if (!m_launch)
        m_launch = [](const QString &program, const QString &file) {
            return QProcess::startDetached(program, {QDir::toNativeSeparators(file)});
        };
}

bool EditorOutput::deliver(const PrintDocument &document, const QString &title)
{
    m_file.clear();
    if (m_program.trimmed().isEmpty()) {
        msgBox(QStringLiteral("Indicare nelle Opzioni il programma da utilizzare per la stampa."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    const QString file = m_dir + fileNameOf(title) + QStringLiteral(".odt");
    QString error;
    if (!QDir().mkpath(m_dir) || !document.exportOdt(file, &error)) {
        msgBox(
            QStringLiteral("Impossibile scrivere il file %1").arg(QDir::toNativeSeparators(file)) +
                (error.isEmpty() ? QString() : QStringLiteral("\r\n") + error),
            Buttons::Ok, Icon::Critical);
        return false;
    }
    m_file = file;
    if (!m_launch(m_program.trimmed(), file)) {
        msgBox(QStringLiteral("Impossibile avviare il programma di stampa %1")
                   .arg(QDir::toNativeSeparators(m_program.trimmed())),
               Buttons::Ok, Icon::Critical);
        return false;
    }
    return true;
}

} // namespace pg::printing
