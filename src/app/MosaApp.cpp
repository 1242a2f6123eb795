#include "MosaApp.h"

#include "AppState.h"
#include "MainWindow.h"

MosaApp::MosaApp()
    : m_state(std::make_unique<AppState>(AppState::Services{})),
      m_window(std::make_unique<MainWindow>(*m_state)) {
    m_window->resize(1440, 900);
    m_window->show();
}

MosaApp::~MosaApp() = default;
