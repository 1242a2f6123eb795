#pragma once

#include <QDir>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

/// What this process holds that a leak would make grow.
namespace ProcessUsage {

inline int threads() {
    return int(QDir(QStringLiteral("/proc/self/task")).count());
}

inline int descriptors() {
    return int(QDir(QStringLiteral("/proc/self/fd")).count());
}

/// Of the shared OpenGL context; -1 without one.
inline int textures() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    context.setShareContext(QOpenGLContext::globalShareContext());
    if (!context.create() || !context.makeCurrent(&surface)) {
        return -1;
    }
    int count = 0;
    for (unsigned name = 1; name < 20'000; ++name) {
        count += context.functions()->glIsTexture(name) ? 1 : 0;
    }
    context.doneCurrent();
    return count;
}

} // namespace ProcessUsage
