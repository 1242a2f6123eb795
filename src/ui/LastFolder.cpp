#include "LastFolder.h"

#include "BackgroundTask.h"
#include "WhenFinished.h"

#include <unistd.h>

LastFolder::~LastFolder() {
    m_test.cancel();
}

void LastFolder::setState(AppState *state) {
    if (!m_state.replace(state, this)) {
        return;
    }
    Q_EMIT stateChanged();
    refresh();
}

void LastFolder::refresh() {
    m_test.cancel();
    const std::optional<FileURL> url = m_state ? m_state->lastFolder() : std::nullopt;
    if (!url) {
        setAvailable(false);
        return;
    }
    m_test = BackgroundTask::run<bool>([path = url->nativePath()](QPromise<bool> &promise) {
        if (!promise.isCanceled()) {
            promise.addResult(::access(path.constData(), F_OK) == 0);
        }
    });
    // Not then(): it would leave m_test without a state that could be cancelled.
    whenFinished(this, m_test, [this](const QFuture<bool> &test) {
        if (!test.isCanceled()) {
            setAvailable(finishedResultOr(test, false));
        }
    });
}

void LastFolder::open() {
    const std::optional<FileURL> url = m_state ? m_state->lastFolder() : std::nullopt;
    if (url) {
        m_state->openFolder(*url, true);
    }
}

void LastFolder::setAvailable(bool available) {
    if (m_available == available) {
        return;
    }
    m_available = available;
    Q_EMIT availableChanged();
}
