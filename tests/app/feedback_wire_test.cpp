#include "../support/logic_fixture.h"

#include "feedback/feedback_vm.h"
#include "platform/fake/fake_bundle.h"
#include "platform/linux/net/https_client.h"
#include "platform/linux/net/secure_requests.h"
#include "platform/linux/process/qt_main_queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <dlfcn.h>
#include <netdb.h>
#include <string_view>

/// In this program "localhost" has two addresses, whatever the machine's own table of hosts says,
/// and nobody listens on the first: hosts of two kinds of addresses are connected to in another
/// way.
extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints,
                           addrinfo** result) {
    static const auto real =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (!node || std::string_view(node) != "localhost")
        return real(node, service, hints, result);
    addrinfo numeric{};
    numeric.ai_flags = AI_NUMERICHOST;
    numeric.ai_socktype = SOCK_STREAM;
    const int failure = real("::1", service, &numeric, result);
    return failure ? failure : real("127.0.0.1", service, &numeric, &(*result)->ai_next);
}

namespace tamsel {

namespace {

/// The stand-in service with an authority of its own, once for all tests.
class Service {
public:
    Service() {
        run({"serve", "--faults"}, m_process);
        m_process.waitForReadyRead(20'000);
        origin = QJsonDocument::fromJson(m_process.readLine())["origin"].toString();
    }
    ~Service() {
        m_process.kill();
        m_process.waitForFinished();
    }
    QString origin;
    QString authority() const { return m_folder.filePath("ca.pem"); }
    /// Answers a ticket as the support side.
    void reply(const QString& uuid, const QString& text) {
        QProcess process;
        run({"reply", uuid, text}, process);
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitCode(), 0);
    }
    QList<QJsonObject> requests() const {
        QFile file(m_folder.filePath("requests"));
        QList<QJsonObject> requests;
        if (file.open(QFile::ReadOnly))
            for (const QByteArray& line : file.readAll().trimmed().split('\n'))
                requests << QJsonDocument::fromJson(line).object();
        return requests;
    }

private:
    void run(const QStringList& arguments, QProcess& process) {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start("/usr/bin/python3",
                      QStringList{"-B", TAMSEL_TICKET_SERVICE, m_folder.path()} + arguments);
    }
    QTemporaryDir m_folder;
    QProcess m_process;
};

} // namespace

struct FeedbackWireTest : LogicFixture {
    static Service& service() {
        static Service shared;
        return shared;
    }
    QtMainQueue realQueue;
    FakeBundle bundle = bundleWith(service().authority());
    SecureRequests requests{bundle, realQueue};
    HttpsClient client{requests, realQueue};
    TicketAPI api{TicketOrigin(service().origin), client, defaults, realQueue, logger};
    std::unique_ptr<FeedbackVM> vm = std::make_unique<FeedbackVM>(api, clock, logger, TimeStyle{});

    static FakeBundle bundleWith(const QString& authority) {
        FakeBundle bundle;
        bundle.resources["ca.pem"] = authority;
        return bundle;
    }
    static void wait(const std::function<bool()>& condition) {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < 30'000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        EXPECT_TRUE(condition());
    }
    /// What opening the ticket ends with.
    QString open(const QString& uuid) {
        QString outcome;
        const TaskHandle handle = api.fetchTicketDetail(
            uuid, [&](const TicketAPI::Outcome<TicketDetailResponse>& response) {
                outcome += response ? "ok" : printedForm(response.error());
            });
        EXPECT_EQ(outcome, "");
        wait([&] { return !outcome.isEmpty(); });
        return outcome;
    }
};

TEST_F(FeedbackWireTest, FilesFollowsAndAnswers) {
    vm->setTitle("Wheel “twice”");
    const QString content = "One\ntwo \U0001F600" + QString(300'000, 'x');
    vm->setContent(content);
    vm->submit();
    wait([&] { return !vm->isSubmitting(); });
    ASSERT_TRUE(vm->showSuccess()) << vm->errorMsg().toStdString();
    ASSERT_EQ(vm->tickets().size(), 1U);
    const QString uuid = vm->tickets()[0].uuid;
    EXPECT_EQ(vm->ticketUuid(), uuid);
    EXPECT_EQ(vm->tickets()[0].status, "pending");
    service().reply(uuid, "Which wheel?");
    vm->loadDetail(uuid);
    wait([&] { return !vm->isLoadingDetail(); });
    EXPECT_TRUE(vm->ticketDetail()->content == content);
    EXPECT_EQ(vm->page().status, "replied");
    vm->setNewComment("The left one");
    vm->addComment(uuid);
    wait([&] { return !vm->isAddingComment(); });
    ASSERT_EQ(vm->comments().size(), 2);

    // On the wire there was what the user wrote, the application's name, and the identifier.
    const QStringList allowed{"host",   "connection", "content-type",    "content-length",
                              "accept", "user-agent", "accept-encoding", "accept-language"};
    const QMap<QString, QString> fixed{{"accept", "application/json"},
                                       {"user-agent", "Tamsel"},
                                       {"accept-language", "*"},
                                       {"accept-encoding", "identity"},
                                       {"connection", "close"}};
    EXPECT_GE(service().requests().size(), 5);
    for (const QJsonObject& request : service().requests()) {
        for (const auto& header : request["headers"].toArray()) {
            const QString name = header[0].toString().toLower();
            EXPECT_TRUE(allowed.contains(name)) << name.toStdString();
            EXPECT_EQ(header[1].toString(), fixed.value(name, header[1].toString()));
        }
    }
}

TEST_F(FeedbackWireTest, FailuresOfEveryKind) {
    const QByteArray cutCode = "requestFailed(401, ↵" + QByteArray(99, 'E') + ")";
    const std::pair<const char*, const char*> cases[] = {
        {"299", "ok"},
        {"c00", "ok"},
        {"302a", "ok"},
        {"404", "requestFailed(404, ticket_not_found)"},
        {"401f", cutCode.constData()},
        {"ead5", "The header of the answer is too long."},
        {"ead1", "The header of the answer is too long."},
        {"500e", "requestFailed(500, E_BROKEN)"},
        {"b1", "the answer is too long"},
        {"b2", "the answer is too long"},
        {"dead", "Connection closed"},
        {"ba5e", "Connection closed"},
        {"199", "requestFailed(199, none)"},
        {"302b", "the redirect is not followed"},
        {"302c", "the redirect is not followed"},
    };
    for (const auto& [uuid, expected] : cases)
        EXPECT_EQ(open(uuid), expected) << uuid;
    for (const QJsonObject& request : service().requests()) {
        for (const auto& header : request["headers"].toArray())
            EXPECT_NE(header[0].toString().toLower(), "cookie");
    }
    const auto asked = [](const QString& path) {
        const auto all = service().requests();
        return std::count_if(all.begin(), all.end(),
                             [&](const auto& each) { return each["path"] == path; });
    };
    EXPECT_EQ(asked("/ticket/302c"), 6);
    EXPECT_EQ(asked("/ticket/ba5e"), 1) << "what got no answer is not asked again";
    // What is posted is not posted again when no answer comes.
    vm->setNewComment("once");
    vm->addComment("ba5e");
    wait([&] { return !vm->isAddingComment(); });
    EXPECT_EQ(vm->errorMsg(), "Add Failed");
    EXPECT_EQ(asked("/ticket/ba5e/comment"), 1);
    // A redirect that keeps the method takes along what is posted.
    vm->setNewComment("moved");
    vm->addComment("308");
    wait([&] { return !vm->isAddingComment(); });
    EXPECT_EQ(asked("/ticket/308/comment"), 1);
    EXPECT_EQ(asked("/ticket/307/comment"), 1);
    const QJsonObject last = service().requests().last();
    EXPECT_EQ(last["path"], "/ticket/0/comment");
    EXPECT_TRUE(last["body"].toString().contains("moved"));
    for (const char* uuid : {"d1", "deaf"}) {
        std::string outcome;
        const TaskHandle handle = client.send(
            {"GET", QUrl(service().origin + "/ticket/" + uuid), {}, {}, Milliseconds(400)},
            [&](const Result<HttpReply>& reply) { outcome = reply.error().description(); });
        wait([&] { return !outcome.empty(); });
        EXPECT_EQ(outcome, "the time is up");
    }
    EXPECT_EQ(open("299"), "ok");
}

TEST_F(FeedbackWireTest, OnlyAKnownServiceIsSpokenTo) {
    Service stranger;
    const auto before = stranger.requests().size();
    TicketAPI other(TicketOrigin(stranger.origin), client, defaults, realQueue, logger);
    QString outcome;
    TaskHandle handle = other.fetchTickets([&](const TicketAPI::Outcome<TicketAPI::Tickets>& list) {
        outcome = printedForm(list.error());
    });
    wait([&] { return !outcome.isEmpty(); });
    EXPECT_EQ(outcome, "The server's certificate can't be trusted.");
    EXPECT_EQ(stranger.requests().size(), before);
    outcome.clear();
    handle = client.send({"GET", QUrl("http://127.0.0.1:9/"), {}, {}},
                         [&](const Result<HttpReply>& reply) {
                             outcome = QString::fromStdString(reply.error().what);
                         });
    wait([&] { return !outcome.isEmpty(); });
    EXPECT_EQ(outcome, "only https is spoken");
}

TEST_F(FeedbackWireTest, ARequestUnderWayEndsWithItsModel) {
    const auto atFirst = service().requests().size();
    for (const bool hasBegun : {false, true}) {
        vm = std::make_unique<FeedbackVM>(api, clock, logger, TimeStyle{});
        const auto before = service().requests().size();
        vm->loadDetail("d1");
        if (hasBegun)
            wait([&] { return service().requests().size() > before; });
        takeLog();
        vm.reset();
        EXPECT_EQ(open("299"), "ok");
        EXPECT_EQ(takeLog().size(), 1);
    }
    EXPECT_EQ(service().requests().size(), atFirst + 3) << "what has not begun never begins";
}

TEST_F(FeedbackWireTest, NoRequestWaitsForAnother) {
    bool hasEnded = false;
    const TaskHandle slow = api.fetchTicketDetail("d1", [&](const auto&) { hasEnded = true; });
    EXPECT_EQ(open("299"), "ok");
    EXPECT_FALSE(hasEnded);
}

} // namespace tamsel
