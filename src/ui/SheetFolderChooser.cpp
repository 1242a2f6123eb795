#include "SheetFolderChooser.h"

#include "ChooserPlaces.h"
#include "WhenFinished.h"

#include <QDir>

SheetFolderChooser::SheetFolderChooser(QObject *parent)
    : QObject(parent), m_start(FileURL::fromPath(QDir::homePath())) {
    connect(&m_browser, &FolderBrowser::accepted, this, &SheetFolderChooser::answer);
}

QFuture<std::optional<FileURL>> SheetFolderChooser::choose(const QString &title, const QString &prompt) {
    const Question question{
        .title = title, .prompt = prompt, .promise = std::make_shared<QPromise<Answer>>()};
    question.promise->start();
    m_questions.enqueue(question);
    if (m_questions.size() == 1) {
        show();
    }
    return question.promise->future();
}

bool SheetFolderChooser::createsFolders() const {
    return active() && prompt() != QStringLiteral("Open");
}

void SheetFolderChooser::show() {
    m_browser.open(m_start);
    whenFinished(this, ChooserPlaces::find(), [this](const QFuture<QVariantList> &found) {
        m_places = finishedResultOr(found, {});
        Q_EMIT placesChanged();
    });
    Q_EMIT changed();
}

void SheetFolderChooser::answer(const Answer &folder) {
    if (!active()) {
        return;
    }
    if (folder) {
        m_start = *folder;
    }
    const Question answered = m_questions.dequeue();
    if (active()) {
        show();
    } else {
        Q_EMIT changed();
    }
    answered.promise->addResult(folder);
    answered.promise->finish();
}
