#include <QTest>

#include "../state/AppStateFixture.h"
#include "MediaMaker.h"
#include "NeighbourPrefetch.h"
#include "TemporaryFolder.h"
#include "ThumbnailDiskCache.h"
#include "ThumbnailService.h"

/// Runs the program's own thumbnail service, in the cache directory that the test was given.
class NeighbourPrefetchTest : public QObject {
    Q_OBJECT

    TemporaryFolder m_folder;
    QList<MediaFile> m_photos;

    /// The numbers of the photos that have a thumbnail on disk.
    QList<int> prepared() const {
        const ThumbnailDiskCache cache(ThumbnailDiskCache::defaultDirectory());
        QList<int> numbers;
        for (int i = 0; i < int(m_photos.size()); ++i) {
            if (!cache.read(m_photos[i].url).isNull()) {
                numbers.append(i);
            }
        }
        return numbers;
    }

private Q_SLOTS:
    void cleanupTestCase() { ThumbnailService::finishShared(std::chrono::seconds(30)); }

    void preparesThePagesBeside() {
        for (int i = 0; i < 7; ++i) {
            const FileURL url = m_folder.at(QByteArray::number(i) + ".jpg");
            QVERIFY(MediaMaker::photo(url, {.size = {96, 64}, .minimumBytes = 0}));
            m_photos.append({.url = url, .kind = MediaKind::photo, .aspectRatio = 1.5});
        }
        AppStateFixture fixture;
        QVERIFY(fixture.show({.folder = m_folder.url(), .videos = {}, .photos = m_photos, .folders = {}}));
        MediaPager pager;
        pager.setState(fixture.state.get());
        // Room for one photo.
        pager.setWidth(100);
        pager.setHeight(200);
        QTRY_COMPARE(pager.pageCount(), 7);
        fixture.state->setPage(4);
        {
            NeighbourPrefetch prefetch;
            prefetch.setPager(&pager);
            QTRY_COMPARE(prepared(), QList<int>({3, 5}));
            fixture.state->setPage(1);
            QTRY_COMPARE(prepared(), QList<int>({0, 2, 3, 5}));
        }
        fixture.state->setPage(6);
        QTest::qWait(100);
        QCOMPARE(prepared(), QList<int>({0, 2, 3, 5}));
    }
};

QTEST_GUILESS_MAIN(NeighbourPrefetchTest)
#include "NeighbourPrefetchTest.moc"
