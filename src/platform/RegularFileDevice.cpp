#include "RegularFileDevice.h"

RegularFileDevice::RegularFileDevice(const RegularFile &file, std::function<bool()> cancelled)
    : m_file(file), m_cancelled(std::move(cancelled)) {
    open(QIODevice::ReadOnly);
}

qint64 RegularFileDevice::readData(char *data, qint64 maxSize) {
    if (m_cancelled && m_cancelled()) {
        return -1;
    }
    return m_file.read(pos(), data, maxSize);
}
