#include <QGuiApplication>
#include <QQmlApplicationEngine>

// The smallest Qt Quick window there is, as a measure for the application's own.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\n"
                    "Window { visible: true; width: 1000; height: 700; Text { text: \"Bare\" } }");
    return QGuiApplication::exec();
}
