#include "MenuCommand.h"

MenuCommand::MenuCommand(Menu menu, QString name, QString title, const QKeySequence &shortcut,
                         QObject *parent)
    : QObject(parent), m_menu(menu), m_name(std::move(name)), m_title(std::move(title)),
      m_shortcut(shortcut) {}

void MenuCommand::setTitle(const QString &title) {
    if (m_title != title) {
        m_title = title;
        Q_EMIT titleChanged();
    }
}

void MenuCommand::setEnabled(bool enabled) {
    change(m_enabled, enabled);
}

void MenuCommand::setSuspended(bool suspended) {
    change(m_suspended, suspended);
}

void MenuCommand::change(bool &flag, bool value) {
    const bool before = isEnabled();
    flag = value;
    if (isEnabled() != before) {
        Q_EMIT enabledChanged();
    }
}

void MenuCommand::trigger() {
    if (isEnabled()) {
        Q_EMIT triggered();
    }
}
