// The items that draw pictures, on Qt Quick's software renderer.

#include "AppState.h"
#include "FullPhotoImage.h"
#include "MediaMaker.h"
#include "PhotoTiling.h"
#include "SymbolIcon.h"
#include "ThumbnailImage.h"
#include "ThumbnailService.h"

#include <QPainter>
#include <QPointingDevice>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

using PhotoTiling::Tile;

namespace {

/// Of the icon that the view shows; empty without one.
QString iconName(const QQuickItem &view) {
    const auto *icon = view.findChild<SymbolIcon *>();
    return icon != nullptr ? icon->property("name").toString() : QString();
}

} // namespace

class PictureItemsTest : public QObject {
    Q_OBJECT

public:
    static void initMain() { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_folder.isValid());
        qputenv("XDG_CACHE_HOME", m_folder.path().toUtf8());
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
    }

    void init() {
        m_window = std::make_unique<QQuickWindow>();
        m_window->setColor(Qt::magenta);
        m_window->resize(300, 300);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanupTestCase() { QVERIFY(ThumbnailService::finishShared(std::chrono::minutes(1))); }

    void tilesCoverThePhoto_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("level");
        QTest::addColumn<QRectF>("area");
        QTest::newRow("one tile exactly") << QSize(512, 512) << 0 << QRectF(0, 0, 512, 512);
        QTest::newRow("odd sides") << QSize(1537, 1023) << 0 << QRectF(0, 0, 1537, 1023);
        QTest::newRow("halved") << QSize(5000, 3000) << 1 << QRectF(0, 0, 5000, 3000);
        QTest::newRow("a part") << QSize(5000, 3000) << 0 << QRectF(600.5, 511.9, 900, 0.2);
        QTest::newRow("beyond the edges") << QSize(1000, 1000) << 0 << QRectF(-500, -500, 5000, 5000);
    }

    void tilesCoverThePhoto() {
        QFETCH(QSize, size);
        QFETCH(int, level);
        QFETCH(QRectF, area);
        const QRectF seen = area.intersected(QRectF(QPointF(0, 0), size));
        double covered = 0;
        for (const Tile &tile : PhotoTiling::tiles(size, level, area)) {
            const QRectF part = QRectF(PhotoTiling::sourceRect(tile, size)).intersected(seen);
            QVERIFY(!part.isEmpty());
            covered += part.width() * part.height();
        }
        QCOMPARE(covered, seen.width() * seen.height());
        QVERIFY(PhotoTiling::tiles(size, level, QRectF(-100, 0, 50, 50)).isEmpty());
    }

    void thumbnailIsShownWhole_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSizeF>("item");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("letterboxed") << QSize(640, 320) << QSizeF(200, 200) << QRect(10, 60, 200, 100);
        QTest::newRow("reduced by far") << QSize(720, 720) << QSizeF(60, 100) << QRect(10, 30, 60, 60);
        QTest::newRow("enlarged") << QSize(40, 20) << QSizeF(200, 200) << QRect(10, 60, 200, 100);
    }

    void thumbnailIsShownWhole() {
        QFETCH(QSize, size);
        QFETCH(QSizeF, item);
        QFETCH(QRect, expected);
        const MediaFile file = photo(QTest::currentDataTag() + QByteArray(".png"), size);
        auto *thumbnail = add<ThumbnailImage>("ThumbnailImage", {QPointF(10, 10), item},
                                              {{u"item"_s, QVariant::fromValue(file)}});
        QTRY_VERIFY_WITH_TIMEOUT(thumbnail->hasImage(), 30'000);
        const QImage screen = grab();
        QVERIFY(MediaMaker::showsPattern(screen.copy(expected)));
        // Nothing is cropped, and nothing is drawn beside it.
        QCOMPARE(screen.pixelColor(expected.topLeft() - QPoint(2, 2)), QColor(Qt::magenta));
        QCOMPARE(screen.pixelColor(expected.bottomRight() + QPoint(2, 2)), QColor(Qt::magenta));
        QVERIFY(screen.pixelColor(expected.topLeft() + QPoint(1, 1)) != QColor(Qt::magenta));
    }

    void thumbnailKeepsTheOldPicture() {
        const MediaFile file = photo("old.png", {640, 480});
        auto *thumbnail =
            add<ThumbnailImage>("ThumbnailImage", {0, 0, 200, 150}, {{u"item"_s, QVariant::fromValue(file)}});
        QTRY_VERIFY_WITH_TIMEOUT(thumbnail->hasImage(), 30'000);
        QSignalSpy changes(thumbnail, &ThumbnailImage::hasImageChanged);
        MediaFile touched = file;
        touched.aspectRatio = 1;
        thumbnail->setItem(touched);
        thumbnail->setItem(photo("new.png", {320, 480}));
        QVERIFY(thumbnail->hasImage());
        const QSizeF upright(100, 150);
        QTRY_COMPARE_WITH_TIMEOUT(thumbnail->pictureRect().size(), upright, 30'000);
        QCOMPARE(changes.count(), 0);
        // A file of which no picture can be made leaves none.
        thumbnail->setItem(
            {.url = FileURL::fromPath(m_folder.filePath(u"missing.png"_s)), .kind = MediaKind::photo});
        QTRY_VERIFY_WITH_TIMEOUT(!thumbnail->hasImage(), 30'000);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(grab().pixelColor(100, 75), QColor(Qt::magenta));

        // In a cell that goes over to another file the old picture would be a wrong one.
        thumbnail->setProperty("keepsOldPicture", false);
        thumbnail->setItem(file);
        QVERIFY2(thumbnail->hasImage(), "it is in memory");
        thumbnail->setItem(photo("newer.png", {320, 480}));
        // A quick thread may have made the picture already.
        QVERIFY(!thumbnail->hasImage() || thumbnail->pictureRect().size() == upright);
        QTRY_COMPARE_WITH_TIMEOUT(thumbnail->pictureRect().size(), upright, 30'000);
    }

    void mediaThumbnailShowsPlaceholderThenPicture() {
        const MediaFile file = photo("media.png", {640, 320});
        auto *view =
            add<QQuickItem>("MediaThumbnail", {0, 0, 200, 200}, {{u"item"_s, QVariant::fromValue(file)}});
        const auto *picture = view->findChild<ThumbnailImage *>();
        // A quick thread may have made the picture already.
        QVERIFY(picture->hasImage() || iconName(*view) == u"photo"_s);
        QTRY_COMPARE_WITH_TIMEOUT(iconName(*view), QString(), 30'000);
        const QImage screen = grab();
        QVERIFY(MediaMaker::showsPattern(screen.copy(0, 50, 200, 100)));
        // The dark layer: black at 0.55 over the window's colour.
        QVERIFY(std::abs(screen.pixelColor(100, 20).red() - 115) < 3);

        const MediaFile video{.url = FileURL::fromPath(m_folder.filePath(u"missing.mp4"_s)),
                              .kind = MediaKind::video};
        auto *missing =
            add<QQuickItem>("MediaThumbnail", {0, 200, 200, 100}, {{u"item"_s, QVariant::fromValue(video)}});
        QTest::qWait(100);
        QCOMPARE(iconName(*missing), u"film.stack"_s);
    }

    void photoIsFittedAndMoved() {
        const MediaFile file = photo("fitted.png", {640, 320});
        auto *view = add<FullPhotoImage>("FullPhotoImage", {0, 0, 300, 300});
        QSignalSpy loaded(view, &FullPhotoImage::loadedChanged);
        view->setUrl(file.url);
        QVERIFY(!view->isLoaded());
        QTRY_VERIFY_WITH_TIMEOUT(view->isSharp(), 30'000);
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(view->naturalSize(), QSize(640, 320));
        QCOMPARE(view->photoRect(), QRectF(0, 75, 300, 150));
        QVERIFY(MediaMaker::showsPattern(grab().copy(0, 75, 300, 150)));
        view->setOffset({0, 75});
        QVERIFY(MediaMaker::showsPattern(grab().copy(0, 150, 300, 150)));
        view->setOffset({0, 0});
        view->setZoom(2);
        QCOMPARE(view->photoRect(), QRectF(-150, 0, 600, 300));
        QTRY_VERIFY_WITH_TIMEOUT(grab().isNull() || view->isSharp(), 30'000);
        QVERIFY(MediaMaker::showsPattern(grab()));
    }

    void photoIsSharpWhenMagnified() {
        QImage picture(3000, 2000, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        QPainter painter(&picture);
        painter.fillRect(1500, 1000, 2, 2, Qt::white);
        painter.fillRect(1600, 0, 100, 2000, Qt::blue);
        painter.end();
        const QString path = m_folder.filePath(u"dot.png"_s);
        QVERIFY(picture.save(path));
        auto *view = add<FullPhotoImage>("FullPhotoImage", {0, 0, 300, 300});
        view->setUrl(FileURL::fromPath(path));
        QTRY_VERIFY_WITH_TIMEOUT(view->isSharp(), 30'000);
        const QImage fitted = grab();
        QVERIFY(fitted.pixelColor(150, 150).red() < 60);
        view->setZoom(8);
        // Frames hand over what is ready.
        QTRY_VERIFY_WITH_TIMEOUT((grab(), view->isSharp()), 30'000);
        const QImage screen = grab();
        int brightest = 0;
        for (int y = 146; y < 154; ++y) {
            for (int x = 146; x < 154; ++x) {
                brightest = std::max(brightest, screen.pixelColor(x, y).red());
            }
        }
        QVERIFY2(brightest > 150, QByteArray::number(brightest));
        QCOMPARE(screen.pixelColor(40, 40), QColor(Qt::darkGreen));
        // Moved while its first tile is being made, and back again: nothing is left behind.
        view->setZoom(4);
        view->setOffset({5, 0});
        QTRY_VERIFY_WITH_TIMEOUT((grab(), view->isSharp()), 30'000);
        view->setOffset({0, 0});
        view->setZoom(1);
        QTRY_COMPARE_WITH_TIMEOUT(grab(), fitted, 30'000);
    }

    void photoIsPinchedAndDragged() {
        AppState state{AppState::Services{}};
        const MediaFile file = photo("pinched.png", {640, 480});
        const std::unique_ptr<QQuickItem> view(add<QQuickItem>(
            "FullPhotoView", {0, 0, 300, 300},
            {{u"item"_s, QVariant::fromValue(file)}, {u"state"_s, QVariant::fromValue(&state)}}));
        const auto *image = view->findChild<FullPhotoImage *>();
        QTRY_VERIFY_WITH_TIMEOUT(image->isLoaded(), 30'000);
        QPointingDevice touchpad(u"touchpad"_s, 7, QInputDevice::DeviceType::TouchPad,
                                 QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, 4,
                                 0);
        const auto gesture = [&](Qt::NativeGestureType type, double value) {
            const QPointF middle(150, 150);
            QNativeGestureEvent event(type, &touchpad, 2, middle, middle, middle, value, {});
            QCoreApplication::sendEvent(m_window.get(), &event);
        };
        const auto pinch = [&](double by) {
            gesture(Qt::BeginNativeGesture, 0);
            for (int i = 0; i < 2; ++i) {
                gesture(Qt::ZoomNativeGesture, std::sqrt(by) - 1);
            }
            gesture(Qt::EndNativeGesture, 0);
            return image->zoom();
        };
        QCOMPARE(pinch(2), 2.0);
        // From where the first ended, and never beyond the limits.
        QCOMPARE(pinch(1.5), 3.0);
        QCOMPARE(pinch(10), 8.0);
        QCOMPARE(pinch(0.5), 4.0);
        QCOMPARE(pinch(0.01), 1.0);

        const auto drag = [&] {
            QTest::mousePress(m_window.get(), Qt::LeftButton, {}, {150, 150});
            for (int x = 160; x <= 200; x += 10) {
                QTest::mouseMove(m_window.get(), {x, 150});
            }
            QTest::mouseRelease(m_window.get(), Qt::LeftButton, {}, {200, 150});
            return image->offset();
        };
        const QPointF once = drag();
        QVERIFY(once.x() > 20 && once.y() == 0);
        QCOMPARE(drag(), 2 * once);
    }

    void photoIsReplaced() {
        auto *view = add<FullPhotoImage>("FullPhotoImage", {0, 0, 300, 300});
        for (int i = 0; i < 5; ++i) {
            view->setUrl(photo("first.png", {640, 480}).url);
            view->setUrl(photo("second.png", {480, 640}).url);
        }
        QTRY_VERIFY_WITH_TIMEOUT(view->isSharp(), 30'000);
        QCOMPARE(view->naturalSize(), QSize(480, 640));
        view->setUrl(FileURL::fromPath(m_folder.filePath(u"missing.png"_s)));
        QTest::qWait(100);
        QVERIFY(!view->isLoaded());
        QCOMPARE(grab().pixelColor(150, 150), QColor(Qt::magenta));
    }

private:
    MediaFile photo(const QByteArray &name, const QSize &size) {
        const FileURL url = FileURL::fromNativePath(m_folder.path().toUtf8() + '/' + name);
        return MediaMaker::photo(url, {.size = size}) ? MediaFile{.url = url, .kind = MediaKind::photo}
                                                      : MediaFile();
    }

    QImage grab() const { return m_window->grabWindow(); }
    template <typename Item>
    Item *add(const char *type, const QRectF &geometry, const QVariantMap &properties = {}) {
        QQmlComponent component(&m_engine);
        component.setData("import Mosa.UI\n" + QByteArray(type) + " {}", {});
        // The engine reads views from files, resources included, on a thread of its own.
        if (!QTest::qWaitFor([&] { return !component.isLoading(); }, 30'000) || !component.isReady()) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        QVariantMap initial{{u"parent"_s, QVariant::fromValue(m_window->contentItem())},
                            {u"x"_s, geometry.x()},
                            {u"y"_s, geometry.y()},
                            {u"width"_s, geometry.width()},
                            {u"height"_s, geometry.height()}};
        initial.insert(properties);
        auto *item = qobject_cast<Item *>(component.createWithInitialProperties(initial));
        if (item == nullptr) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        item->setParent(m_window->contentItem());
        return item;
    }

    QTemporaryDir m_folder;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

QTEST_MAIN(PictureItemsTest)
#include "PictureItemsTest.moc"
