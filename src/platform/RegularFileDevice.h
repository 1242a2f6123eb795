#pragma once

#include "RegularFile.h"

#include <QIODevice>

#include <functional>

/// Lets Qt's image readers read a file that is already open, so that the bytes of its name do not matter.
/// Reading fails from the moment that `cancelled` says so, which ends the decoder soon.
class RegularFileDevice : public QIODevice {
    Q_OBJECT

public:
    /// The file must outlive the device.
    explicit RegularFileDevice(const RegularFile &file, std::function<bool()> cancelled = {});

    qint64 size() const override { return m_file.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const RegularFile &m_file;
    std::function<bool()> m_cancelled;
};
