#pragma once

#include "MediaGridSizing.h"
#include "MediaPageModel.h"
#include "StatePointer.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QSizeF>

#include <vector>

/// Cuts the state's current media into pages that fit the browser's area, and keeps the page on screen.
///
/// A change of the area or of the page asked for takes effect at once; changes of the media are gathered
/// until the event loop's next turn, so that opening a folder pages once. Main thread.
class MediaPager : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged REQUIRED)
    /// The browser's whole area in points, toolbar and folder strip included.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY sizeChanged)
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY sizeChanged)
    Q_PROPERTY(bool immersive READ immersive WRITE setImmersive NOTIFY immersiveChanged)
    /// What toolbar and folder strip take of the height.
    Q_PROPERTY(int reservedHeight READ reservedHeight NOTIFY reservedHeightChanged)
    /// At least 1.
    Q_PROPERTY(int pageCount READ pageCount NOTIFY pageCountChanged)
    /// The state's page, within the pages that there are. Written back to the state whenever it changes.
    Q_PROPERTY(int shownPage READ shownPage NOTIFY shownPageChanged)
    Q_PROPERTY(MediaPageModel *pageItems READ pageItems CONSTANT)
    /// The ids of pageItems, in order.
    Q_PROPERTY(QStringList pageItemIds READ pageItemIds NOTIFY pageItemIdsChanged)
    /// The state has no current media.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)

public:
    explicit MediaPager(QObject *parent = nullptr);

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    double width() const { return m_size.width(); }
    void setWidth(double width);
    double height() const { return m_size.height(); }
    void setHeight(double height);
    bool immersive() const { return m_immersive; }
    void setImmersive(bool immersive);

    int reservedHeight() const { return m_reservedHeight; }
    int pageCount() const { return m_pageCount; }
    int shownPage() const { return m_shownPage; }
    MediaPageModel *pageItems() { return &m_pageItems; }
    QStringList pageItemIds() const;
    bool isEmpty() const { return m_media.isEmpty(); }
    /// Empty for a page that there is not.
    QList<MediaFile> itemsOfPage(int page) const;

    void classBegin() override { m_complete = false; }
    void componentComplete() override;

Q_SIGNALS:
    void stateChanged();
    void sizeChanged();
    void immersiveChanged();
    void reservedHeightChanged();
    void pageCountChanged();
    void shownPageChanged();
    void pageItemIdsChanged();
    void isEmptyChanged();

private:
    void scheduleMediaUpdate();
    void updateMedia();
    void updateReservedHeight();
    void updatePages();
    void updateShownPage();
    void setShownPage(int page);

    StatePointer m_state;
    QSizeF m_size;
    bool m_immersive = false;
    int m_reservedHeight = 0;
    int m_pageCount = 1;
    int m_shownPage = 0;
    MediaPageModel m_pageItems;
    QList<MediaFile> m_media;
    std::vector<double> m_aspectRatios;
    std::vector<MediaGridSizing::Range> m_ranges;
    /// False while QML sets the first values.
    bool m_complete = true;
    /// m_media is out of date and about to be updated.
    bool m_mediaUpdateScheduled = false;
    /// A page has been shown.
    bool m_appeared = false;
};
