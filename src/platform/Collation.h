#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct UCollator;

/// The order in which names stand in lists: digit runs by value, letters whatever their case, accents after
/// the bare letter. It is the root order of the Unicode collation algorithm, hence the same on every machine,
/// whatever language it is set to.
///
/// An instance costs microseconds. One thread at a time.
class Collation {
public:
    Collation();

    /// Keys compare bytewise (unsigned) as the names do; equal keys mean that neither name comes first.
    QByteArray sortKey(const QString &name) const;

private:
    struct Closer {
        void operator()(UCollator *collator) const;
    };
    std::unique_ptr<UCollator, Closer> m_collator;
};
