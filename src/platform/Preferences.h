#pragma once

#include <QString>

#include <optional>

/// The user's preferences: texts by key, kept between runs. Main thread; reads come from memory, and writes
/// reach the disk later.
class Preferences {
public:
    virtual ~Preferences() = default;
    virtual std::optional<QString> string(const QString &key) const = 0;
    virtual void setString(const QString &key, const QString &value) = 0;
};
