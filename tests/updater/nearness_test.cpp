#include "update_fixture.h"

#include <QHash>

namespace tamsel {

TEST_F(UpdateSessionTest, AFeedFromFarAwayLeadsToNothingNear) {
    // To this test 127.0.0.1 is the internet, and what its names lead to is as near as it is.
    network.scopeOf = [](const QHostAddress& address) {
        return address == QHostAddress::LocalHost ? AddressScope::internet
                                                  : tamsel::scopeOf(address);
    };
    network.resolve = [](const QString& host, QObject* context, const Network::Addresses& found) {
        const QHash<QString, QList<QHostAddress>> known{
            {"here.example", {QHostAddress("127.0.0.2")}},
            {"inside.example", {QHostAddress("10.1.2.3"), QHostAddress("fd00::1")}},
            {"rebound.example", {QHostAddress("::ffff:192.168.1.1")}},
            {"127.0.0.1", {QHostAddress(QHostAddress::LocalHost)}}};
        QTimer::singleShot(0, context, [=] { found(known.value(host, {QHostAddress(host)})); });
    };
    make();
    const QString path = server.address("/archive").section(':', 2);
    for (const char* host : {"here.example", "inside.example", "rebound.example", "127.0.0.2",
                             "[::1]", "192.168.1.1", "169.254.169.254"}) {
        offer(good, archiveBytes.size(), "150", QString("https://%1:%2").arg(host, path));
        EXPECT_TRUE(check().contains("show error")) << host;
        EXPECT_EQ(listener.error, "The update's address is not secure.") << host;
        server.replies["/feed"] = TlsServer::redirect(QString("https://%1:%2").arg(host, path));
        check();
        EXPECT_EQ(listener.error, "The update server's address is not secure.") << host;
    }
    offer(good, archiveBytes.size());
    EXPECT_EQ(check().last(), "install") << "what is as far away is spoken to";
}

TEST(AddressScope, KnowsWhatIsNoPartOfTheInternet) {
    const std::pair<AddressScope, QStringList> cases[] = {
        {AddressScope::loopback,
         {"127.0.0.1", "127.8.8.8", "::1", "::ffff:127.0.0.1", "0.0.0.0", "::", "64:ff9b::7f00:1"}},
        {AddressScope::local,
         {"10.0.0.1", "172.16.0.1", "172.31.255.255", "192.168.0.1", "169.254.169.254",
          "100.64.0.1", "224.0.0.1", "255.255.255.255", "fe80::1", "fd12::1", "ff02::1",
          "::ffff:10.0.0.1", "64:ff9b::a00:1", "2002:a00:1::", "2001:db8::1"}},
        {AddressScope::internet,
         {"8.8.8.8", "172.15.0.1", "172.32.0.1", "100.128.0.1", "2606:4700::1", "::ffff:8.8.8.8",
          "64:ff9b::808:808"}}};
    for (const auto& [scope, addresses] : cases)
        for (const QString& address : addresses)
            EXPECT_EQ(scopeOf(QHostAddress(address)), scope) << address.toStdString();
}

} // namespace tamsel
