#include "KeyMap.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"

#include <algorithm>

void KeyMap::setState(AppState *state) {
    if (m_state == state) {
        return;
    }
    m_state = state;
    Q_EMIT stateChanged();
}

void KeyMap::setImmersive(bool immersive) {
    if (m_immersive == immersive) {
        return;
    }
    m_immersive = immersive;
    Q_EMIT immersiveChanged();
}

bool KeyMap::handleKey(const KeyPress &press) {
    if (!m_state) {
        return false;
    }
    if (press.command && press.characters == QLatin1String("[")) {
        m_state->navigateBack();
        return true;
    }
    if (m_state->fullItem() && handleInViewer(press.key)) {
        return true;
    }
    if (handleInBrowser(press.key)) {
        return true;
    }
    if (press.characters == QLatin1String("f")) {
        toggleFullScreen(!m_hasWindow || !m_windowIsFullScreen);
        return true;
    }
    return false;
}

bool KeyMap::handleInViewer(KeyPress::Key key) {
    switch (key) {
    case KeyPress::Key::leftArrow:
        m_state->moveFullItem(-1);
        return true;
    case KeyPress::Key::rightArrow:
        m_state->moveFullItem(1);
        return true;
    case KeyPress::Key::space:
        if (m_state->fullItem()->kind != MediaKind::video) {
            return false;
        }
        NotificationCentre::defaultCentre().post(NotificationNames::mosaTogglePlayback);
        return true;
    case KeyPress::Key::escape:
        m_state->closeFullItem();
        return true;
    case KeyPress::Key::other:
        return false;
    }
    return false;
}

bool KeyMap::handleInBrowser(KeyPress::Key key) {
    switch (key) {
    case KeyPress::Key::leftArrow:
        m_state->setPage(std::max(m_state->page() - 1, 0));
        return true;
    case KeyPress::Key::rightArrow:
        // No upper limit: the browser shows its last page for any page beyond it.
        m_state->setPage(m_state->page() + 1);
        return true;
    case KeyPress::Key::escape:
        leave();
        return true;
    case KeyPress::Key::space:
    case KeyPress::Key::other:
        return false;
    }
    return false;
}

void KeyMap::leave() {
    if (m_immersive) {
        toggleFullScreen(false);
    } else if (m_state->canNavigateBack()) {
        m_state->navigateBack();
    }
}

void KeyMap::toggleFullScreen(bool immersive) {
    setImmersive(immersive);
    if (m_hasWindow) {
        Q_EMIT fullScreenToggled();
    }
}
