// Start-up of the desktop program on an installation, from the process start to the main
// window shown (the program ends at once when PAGAMENTI_QUIT_WHEN_SHOWN is set), beside the
// limit: a Qt program that shows an empty window, started and timed the same way.
//
//   bench_startup DIR [--runs R] [--items N]   (N: the due items of the installation, printed)

#include "benchcommon.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

using namespace pg;

namespace {

double runOnce(const QString &program, const QStringList &arguments, const QProcessEnvironment &env,
               bool *ok)
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const double ms = bench::timedMs([&] {
        process.start(program, arguments);
        *ok = process.waitForFinished(300000) && process.exitStatus() == QProcess::NormalExit &&
              process.exitCode() == 0;
    });
    return ms;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "uso: bench_startup CARTELLA [--runs R]\n");
        return 2;
    }
    const int runs = bench::intOption(args, u"--runs", 5);
    const qint64 items = bench::intOption(args, u"--items", 0);
    const QString bin = QCoreApplication::applicationDirPath() + u'/';
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("ORVIDA_INI_DIR"), args.at(1));
    env.insert(QStringLiteral("PAGAMENTI_QUIT_WHEN_SHOWN"), QStringLiteral("1"));
    if (!env.contains(QStringLiteral("QT_QPA_PLATFORM")))
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));

    QList<double> program;
    QList<double> empty;
    bool ok = true;
    for (int run = 0; run < runs && ok; ++run) {
        empty << runOnce(bin + QStringLiteral("bench_emptywindow"), {}, env, &ok);
        program << runOnce(bin + QStringLiteral("pagamenti"), {QStringLiteral("Pagamenti")}, env, &ok);
    }
    if (!ok) {
        std::fprintf(stderr, "il programma non si è avviato sull'installazione %s\n", qPrintable(args.at(1)));
        return 1;
    }
    bench::report("avvio fino alla finestra", items, bench::median(program), bench::median(empty));
    return 0;
}
