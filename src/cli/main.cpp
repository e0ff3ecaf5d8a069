// pagamenti-cli: the command line of Pagamenti for administrators and scripted payment runs.
#include "cli/cliapplication.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Pagamenti"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    pg::cli::CliApplication cli(out, err);
    const int code = cli.run(QCoreApplication::arguments().mid(1));
    out.flush();
    err.flush();
    return code;
}
