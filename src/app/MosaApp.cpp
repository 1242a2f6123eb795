#include "MosaApp.h"

#include "AppState.h"
#include "MainWindow.h"

MosaApp::MosaApp()
    : m_state(std::make_unique<AppState>(AppState::Services{})), m_window(std::make_unique<MainWindow>()) {
    m_window->setInitialProperties({{QStringLiteral("state"), QVariant::fromValue(m_state.get())},
                                    {QStringLiteral("host"), QVariant::fromValue(m_window.get())}});
    m_window->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Mosa/App/MainScene.qml")));
    m_window->open();
}

MosaApp::~MosaApp() = default;
