#include "publish.h"
#include "secret_key.h"

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

void describe(QCommandLineParser& line) {
    line.setApplicationDescription(
        "keys KEYFILE       makes a key pair and prints its public half\n"
        "public KEYFILE     prints the public half of a key\n"
        "contents FOLDER    lists in a copy what belongs to it, before it is packed\n"
        "publish ARCHIVE    signs a portable archive and announces it in the feed\n"
        "refresh            gives the feed a later end\n"
        "announce PUBLIC    lets one more key sign feeds and archives; prints the list of keys\n"
        "revoke PUBLIC      takes a key back; prints the list of keys");
    line.addPositionalArgument("command", "what to do");
    line.addPositionalArgument("what", "a file, a folder or a public key");
    line.addOptions({{"key", "file with the secret key", "file"},
                     {"offline", "file with the secret key that is kept offline", "file"},
                     {"url", "address that the archive will have", "url"},
                     {"feed", "file with the feed, made when it isn't there", "file"},
                     {"days", "for which the feed is good (60)", "number", "60"},
                     {"title", "title of the entry", "text"},
                     {"minimum-system", "oldest kernel release that it runs on", "release"},
                     {"hardware", "processors that it runs on, such as x86_64", "list"}});
    line.addHelpOption();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser line;
    describe(line);
    line.process(application);
    const QStringList words = line.positionalArguments();
    const QString command = words.value(0);
    const QString what = words.value(1);
    const tamsel::FeedFile feed{line.value("feed"), line.value("key"), line.value("days").toInt()};
    if (words.size() == 1 && command == u"refresh")
        return tell(tamsel::refresh(feed));
    if (words.size() != 2)
        line.showHelp(1);
    if (command == u"keys")
        return tell(tamsel::makeKeyFile(what));
    if (command == u"public")
        return tell(tamsel::publicKeyIn(what));
    if (command == u"contents")
        return tell(tamsel::writeContents(what));
    if (command == u"publish")
        return tell(tamsel::publish({what, line.value("url"), line.value("title"),
                                     line.value("minimum-system"), line.value("hardware")},
                                    feed));
    using tamsel::KeyChange;
    if (command == u"announce" || command == u"revoke")
        return tell(
            tamsel::changeKeys(command == u"revoke" ? KeyChange::revoke : KeyChange::announce, what,
                               line.value("offline"), feed));
    line.showHelp(1);
}
