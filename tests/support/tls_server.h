#pragma once

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

namespace tamsel {

/// An https server on a loopback port with an authority of its own, which plays back raw replies.
class TlsServer final {
public:
    /// What a path answers: every byte of the reply, then the end. An empty reply never comes.
    QHash<QString, QByteArray> replies;
    QStringList asked; ///< first line and headers of each request

    TlsServer() {
        const QStringList words = QString("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 "
                                          "-nodes -days 2 -subj /CN=test -addext "
                                          "subjectAltName=IP:127.0.0.1 -keyout %1 -out %2")
                                      .arg(m_folder.filePath("key.pem"), authority())
                                      .split(' ');
        QProcess openssl;
        openssl.start("openssl", words);
        openssl.waitForFinished();
        QFile key(m_folder.filePath("key.pem"));
        static_cast<void>(key.open(QFile::ReadOnly));
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificateChain(QSslCertificate::fromPath(authority()));
        tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        m_server.setSslConfiguration(tls);
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QSslServer::pendingConnectionAvailable, &m_server, [this] {
            auto* socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                const QByteArray request = socket->readAll();
                asked << QString::fromLatin1(request);
                const QString path = QString::fromLatin1(request.split(' ').value(1));
                const QByteArray reply = replies.value(path.section('?', 0, 0));
                if (reply.isEmpty())
                    return;
                socket->write(reply);
                socket->disconnectFromHost();
            });
        });
    }

    QString authority() const { return m_folder.filePath("ca.pem"); }
    QString address(const QString& path) const {
        return QString("https://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }
    static QByteArray ok(const QByteArray& body) {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n\r\n" + body;
    }
    static QByteArray redirect(const QString& to) {
        return "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + to.toLatin1() + "\r\n\r\n";
    }

private:
    QTemporaryDir m_folder;
    QSslServer m_server;
};

} // namespace tamsel
