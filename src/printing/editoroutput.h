#pragma once

#include "printoutput.h"

#include <functional>

namespace pg::printing {

// The document handed to the external program of the "Editor" setting (any value but 99):
// written as an OpenDocument text into a directory (the suite's "D_STM/") and opened in the
// program of the "Path" setting, which the clerk then prints from. OpenDocument because Qt
// writes it natively and every word processor in use opens it; Qt has no RTF writer, and an
// RTF of our own would lose the tables the distinta is made of.
class EditorOutput : public PrintOutput
{
public:
    // Starts a program with the file as its one argument, without waiting for it; true when
    // it started.
    using Launcher = std::function<bool(const QString &program, const QString &file)>;

    EditorOutput(const QString &program, const QString &directory, Launcher launcher = {});
    bool deliver(const PrintDocument &document, const QString &title) override;

    // The file written by the last deliver().
    const QString &file() const { return m_file; }

private:
    QString m_program;
    QString m_dir;
    Launcher m_launch;
    QString m_file;
};

} // namespace pg::printing
