#include "TemporaryFolder.h"

#include <QDebug>
#include <QDir>

#include <cstdlib>
#include <filesystem>
#include <string>

TemporaryFolder::TemporaryFolder() {
    std::string path = std::filesystem::canonical(QDir::tempPath().toStdString()) / "mosa-test-XXXXXX";
    if (mkdtemp(path.data()) != nullptr) {
        m_url = FileURL::directory(QByteArray::fromStdString(path));
    }
}

TemporaryFolder::~TemporaryFolder() {
    if (isValid()) {
        std::error_code error;
        std::filesystem::remove_all(m_url.nativePath().toStdString(), error);
        if (error) {
            qWarning() << "cannot remove" << m_url.path() << error.message().c_str();
        }
    }
}

bool TemporaryFolder::makeFolder(const QByteArray &path) const {
    std::error_code error;
    std::filesystem::create_directories(at(path).nativePath().toStdString(), error);
    return !error;
}
