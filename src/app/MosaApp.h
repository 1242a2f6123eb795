#pragma once

#include <memory>

class AppState;
class MainWindow;

/// Owns the program's long-lived objects for the whole run.
class MosaApp {
public:
    MosaApp();
    ~MosaApp();

private:
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<MainWindow> m_window;
};
