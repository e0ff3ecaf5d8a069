// The limit of the start-up measure: a Qt program that shows an empty window and ends as soon
// as it is shown.

#include <QApplication>
#include <QTimer>
#include <QWidget>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWidget window;
    window.resize(1024, 700);
    window.show();
    QTimer::singleShot(0, &app, &QCoreApplication::quit);
    return app.exec();
}
