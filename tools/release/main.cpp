#include "publish.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

int tell(const tamsel::Result<QString>& result) {
    if (!result) {
        std::fprintf(stderr, "tamsel-release: %s\n", result.error().description().c_str());
        return 1;
    }
    std::puts(result->toUtf8().constData());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser line;
    line.setApplicationDescription(
        "keys KEYFILE      makes a key pair and prints its public half\n"
        "public KEYFILE    prints the public half of a key\n"
        "publish ARCHIVE   signs a portable archive and announces it in the feed");
    line.addPositionalArgument("command", "keys, public or publish");
    line.addPositionalArgument("file", "the key's file, or the archive");
    line.addOptions({{"key", "file with the secret key", "file"},
                     {"url", "address that the archive will have", "url"},
                     {"feed", "file with the feed, made when it isn't there", "file"},
                     {"title", "title of the entry", "text"},
                     {"minimum-system", "oldest kernel release that it runs on", "release"},
                     {"hardware", "processors that it runs on, such as x86_64", "list"}});
    line.addHelpOption();
    line.process(application);
    const QStringList words = line.positionalArguments();
    const QString command = words.value(0);
    if (words.size() == 2 && command == u"keys")
        return tell(tamsel::makeKeyFile(words[1]));
    if (words.size() == 2 && command == u"public")
        return tell(tamsel::publicKeyIn(words[1]));
    if (words.size() == 2 && command == u"publish")
        return tell(tamsel::publish({line.value("key"), words[1], line.value("url"),
                                     line.value("feed"), line.value("title"),
                                     line.value("minimum-system"), line.value("hardware")}));
    line.showHelp(1);
}
