#include "MPVPlayerController.h"

MPVPlayerController::MPVPlayerController(const FileURL &url, bool preview, QObject *parent)
    : QObject(parent), m_url(url), m_preview(preview) {}
