#include "BatchProgress.h"

#include <QObject>
#include <QTimer>

#include <algorithm>
#include <atomic>

namespace {

constexpr int millisecondsBetween = 16;

} // namespace

struct BatchProgress::Relay {
    std::atomic<double> fraction = 0;
    /// A report has woken the receiver, which looks at later ones by itself for a while.
    std::atomic<bool> awake = false;
    // What follows belongs to the receiver's thread.
    Show show;
    double shown = -1;
    /// The timer's parent, deleted by its own thread, since the last reporter may go on any.
    std::unique_ptr<QObject, void (*)(QObject *)> receiver{new QObject, [](QObject *o) { o->deleteLater(); }};
    QTimer *timer = new QTimer(receiver.get());

    void update() {
        awake = false;
        const double latest = fraction;
        if (show && latest != shown) {
            awake = true;
            timer->start(millisecondsBetween);
            shown = latest;
            show(latest);
        }
    }
};

BatchProgress::BatchProgress(Show show) : m_relay(std::make_shared<Relay>()) {
    m_relay->show = std::move(show);
    m_relay->timer->setSingleShot(true);
    QObject::connect(m_relay->timer, &QTimer::timeout, m_relay->receiver.get(),
                     [weak = std::weak_ptr(m_relay)] {
                         if (const auto relay = weak.lock()) {
                             relay->update();
                         }
                     });
}

FileOperations::Progress BatchProgress::reporter() const {
    return [relay = m_relay](qsizetype done, qsizetype total) {
        relay->fraction = double(done) / double(std::max<qsizetype>(total, 1));
        if (!relay->awake.exchange(true)) {
            const std::weak_ptr<Relay> weak = relay;
            QMetaObject::invokeMethod(
                relay->receiver.get(),
                [weak] {
                    if (const auto alive = weak.lock()) {
                        alive->update();
                    }
                },
                Qt::QueuedConnection);
        }
    };
}

void BatchProgress::end() const {
    m_relay->show = {};
    m_relay->timer->stop();
}
