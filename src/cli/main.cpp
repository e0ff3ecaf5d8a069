// pagamenti-cli: the command line of Pagamenti for administrators and scripted payment runs.
#include "cli/cliapplication.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char *argv[])
{
    // The print lays out text and writes PDF files, which needs the GUI library but never a
    // display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Pagamenti"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    pg::cli::CliApplication cli(out, err);
    const int code = cli.run(QCoreApplication::arguments().mid(1));
    out.flush();
    err.flush();
    return code;
}
