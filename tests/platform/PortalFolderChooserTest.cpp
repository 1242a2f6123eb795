#include "PortalFolderChooser.h"

#include "PrivateBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int limit = 30000;
using Answer = std::optional<FileURL>;

/// Stands in for the desktop's portal.
class StandInPortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version MEMBER version CONSTANT)

public:
    explicit StandInPortal(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    void respond(uint code, const QStringList &uris) {
        QDBusMessage response =
            QDBusMessage::createSignal(m_request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << code << QVariantMap{{u"uris"_s, uris}};
        m_bus.send(response);
    }

    uint version = 3;
    bool refuses = false;
    bool ownRequestPath = false;
    QString title;
    QVariantMap options;

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString &, const QString &givenTitle, const QVariantMap &givenOptions) {
        if (refuses) {
            sendErrorReply(QDBusError::Failed, u"no dialog"_s);
            return {};
        }
        title = givenTitle;
        options = givenOptions;
        const QString sender = message().service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        const QString token = ownRequestPath ? u"other"_s : options.value(u"handle_token"_s).toString();
        m_request = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
        return QDBusObjectPath(m_request);
    }

private:
    QDBusConnection m_bus;
    QString m_request;
};

class FallbackChooser : public FolderChooser {
public:
    QFuture<Answer> choose(const QString &, const QString &) override {
        ++asked;
        QPromise<Answer> promise;
        promise.start();
        promise.addResult(FileURL::directory("/fallback"));
        promise.finish();
        return promise.future();
    }
    int asked = 0;
};

} // namespace

class PortalFolderChooserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
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
        QTest::newRow("nothing chosen") << 0U << QStringList() << false << QByteArray();
        QTest::newRow("not a file") << 0U << QStringList{u"smb://host/a"_s} << false << QByteArray();
    }

    void answers() {
        QFETCH(uint, code);
        QFETCH(QStringList, uris);
        QFETCH(bool, ownPath);
        QFETCH(QByteArray, folder);
        PrivateBus bus;
        StandInPortal portal(bus.connect());
        portal.ownRequestPath = ownPath;
        FallbackChooser fallback;
        PortalFolderChooser chooser(
            bus.connect(), [] { return QString(); }, fallback);
        QTRY_VERIFY_WITH_TIMEOUT(chooser.isAvailable(), limit);

        const QFuture<Answer> answer = chooser.choose(u"Open Folder"_s, u"Open_it"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!portal.options.isEmpty(), limit);
        QCOMPARE(portal.title, u"Open Folder"_s);
        QCOMPARE(portal.options.value(u"directory"_s), QVariant(true));
        QCOMPARE(portal.options.value(u"accept_label"_s), QVariant(u"Open__it"_s));
        // The reply of the call carries the path that the answer comes from.
        QTest::qWait(ownPath ? 500 : 0);
        QVERIFY(!answer.isFinished());
        portal.respond(code, uris);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), limit);
        QCOMPARE(answer.result() ? answer.result()->nativePath() : QByteArray(), folder);
        QCOMPARE(fallback.asked, 0);
    }

    void fallsBack_data() {
        QTest::addColumn<bool>("present");
        QTest::addColumn<uint>("version");
        QTest::addColumn<bool>("refuses");
        QTest::newRow("no portal") << false << 3U << false;
        QTest::newRow("too old for folders") << true << 2U << false;
        QTest::newRow("portal without dialogs") << true << 3U << true;
    }

    void fallsBack() {
        QFETCH(bool, present);
        QFETCH(uint, version);
        QFETCH(bool, refuses);
        PrivateBus bus;
        std::unique_ptr<StandInPortal> portal;
        if (present) {
            portal = std::make_unique<StandInPortal>(bus.connect());
            portal->version = version;
            portal->refuses = refuses;
        }
        FallbackChooser fallback;
        PortalFolderChooser chooser(
            bus.connect(), [] { return QString(); }, fallback);
        if (refuses) {
            QTRY_VERIFY_WITH_TIMEOUT(chooser.isAvailable(), limit);
        } else {
            QTest::qWait(300);
            QVERIFY(!chooser.isAvailable());
        }
        const QFuture<Answer> answer = chooser.choose(u"Open Folder"_s, u"Open"_s);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), limit);
        QCOMPARE(fallback.asked, 1);
        QCOMPARE(answer.result()->nativePath(), "/fallback"_ba);
        QVERIFY(!chooser.isAvailable());
    }
};

QTEST_GUILESS_MAIN(PortalFolderChooserTest)
#include "PortalFolderChooserTest.moc"
