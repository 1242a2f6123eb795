#include "PortalFolderChooser.h"

#include "StandInService.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using Answer = std::optional<FileURL>;

class FallbackChooser : public FolderChooser {
public:
    QFuture<Answer> choose(const QString &, const QString &) override {
        QPromise<Answer> promise;
        promise.start();
        promise.addResult(FileURL::directory("/fallback"));
        promise.finish();
        return promise.future();
    }
};

class PortalFolderChooserTest : public QObject {
    Q_OBJECT

    static constexpr int patience = PrivateBus::patience;

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<StandInService> m_portal;
    FallbackChooser m_fallback;
    std::unique_ptr<PortalFolderChooser> m_chooser;
    uint m_version = 3;
    bool m_refuses = false;
    bool m_ownRequestPath = false;
    QString m_request;

    QDBusMessage reply(const QDBusMessage &call) {
        if (call.member() == u"Get"_s) {
            return call.createReply(QVariant::fromValue(QDBusVariant(m_version)));
        }
        if (m_refuses) {
            return call.createErrorReply(QDBusError::Failed, u"no dialog"_s);
        }
        const QString token =
            qdbus_cast<QVariantMap>(call.arguments()[2]).value(u"handle_token"_s).toString();
        m_request = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            call.service().mid(1).replace(u'.', u'_'), m_ownRequestPath ? u"other"_s : token);
        return call.createReply(QVariant::fromValue(QDBusObjectPath(m_request)));
    }

    /// The answer of a chooser that knows the portal.
    QFuture<Answer> ask() {
        m_portal = std::make_unique<StandInService>(m_bus->connect(), u"org.freedesktop.portal.Desktop"_s,
                                                    [this](const QDBusMessage &call) { return reply(call); });
        m_chooser = std::make_unique<PortalFolderChooser>(
            m_bus->connect(), [] { return QString(); }, m_fallback);
        const bool knows =
            QTest::qWaitFor([&] { return m_chooser->isAvailable(); }, m_version < 3 ? 300 : patience);
        return knows == (m_version >= 3) ? m_chooser->choose(u"Open Folder"_s, u"Open_it"_s)
                                         : QFuture<Answer>();
    }

private Q_SLOTS:
    void init() {
        m_bus = std::make_unique<PrivateBus>();
        m_request.clear();
    }

    void cleanup() {
        m_chooser.reset();
        m_portal.reset();
        m_bus.reset();
    }

    void answers_data() {
        QTest::addColumn<uint>("code");
        QTest::addColumn<QStringList>("uris");
        QTest::addColumn<bool>("ownPath");
        QTest::addColumn<QByteArray>("folder");
        const QStringList uris{u"file:///home/a%20b/%FFx"_s};
        QTest::newRow("chosen") << 0U << uris << false << "/home/a b/\xFFx"_ba;
        QTest::newRow("at another request path") << 0U << uris << true << "/home/a b/\xFFx"_ba;
        QTest::newRow("cancelled") << 1U << uris << false << QByteArray();
        QTest::newRow("not a file") << 0U << QStringList{u"smb://host/a"_s} << false << QByteArray();
    }

    void answers() {
        QFETCH(uint, code);
        QFETCH(QStringList, uris);
        QFETCH(QByteArray, folder);
        QFETCH(bool, ownPath);
        m_version = 3;
        m_refuses = false;
        m_ownRequestPath = ownPath;
        const QFuture<Answer> answer = ask();
        QTRY_VERIFY_WITH_TIMEOUT(!m_request.isEmpty(), patience);
        const QVariantList arguments = m_portal->calls.last().arguments();
        QCOMPARE(arguments[1].toString(), u"Open Folder"_s);
        const auto options = qdbus_cast<QVariantMap>(arguments[2]);
        QCOMPARE(options.value(u"directory"_s), QVariant(true));
        QCOMPARE(options.value(u"accept_label"_s), QVariant(u"Open__it"_s));
        // The reply of the call carries the path that the answer comes from.
        QTest::qWait(ownPath ? 500 : 0);
        QVERIFY(!answer.isFinished());
        m_portal->signal(m_request, u"org.freedesktop.portal.Request"_s, u"Response"_s,
                         {code, QVariantMap{{u"uris"_s, uris}}});
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), patience);
        QCOMPARE(answer.result() ? answer.result()->nativePath() : QByteArray(), folder);
    }

    void fallsBack_data() {
        QTest::addColumn<uint>("version");
        QTest::addColumn<bool>("refuses");
        QTest::newRow("too old for folders") << 2U << false;
        QTest::newRow("without dialogs") << 3U << true;
        QTest::newRow("dies with its dialog") << 3U << false;
    }

    void fallsBack() {
        QFETCH(uint, version);
        QFETCH(bool, refuses);
        m_version = version;
        m_refuses = refuses;
        m_ownRequestPath = false;
        const QFuture<Answer> answer = ask();
        if (version == 3 && !refuses) {
            QTRY_VERIFY_WITH_TIMEOUT(!m_request.isEmpty(), patience);
            m_portal->leave();
        }
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), patience);
        QCOMPARE(answer.result()->nativePath(), "/fallback"_ba);
        QVERIFY(!m_chooser->isAvailable());
    }
};

QTEST_GUILESS_MAIN(PortalFolderChooserTest)
#include "PortalFolderChooserTest.moc"
