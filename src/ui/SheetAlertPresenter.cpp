#include "SheetAlertPresenter.h"

QFuture<int> SheetAlertPresenter::present(const Alert &alert) {
    const Question question{.alert = alert, .promise = std::make_shared<QPromise<int>>()};
    question.promise->start();
    m_questions.enqueue(question);
    if (m_questions.size() == 1) {
        Q_EMIT changed();
    }
    return question.promise->future();
}

void SheetAlertPresenter::choose(int button) {
    if (button < 0 || button >= buttons().size()) {
        return;
    }
    const Question answered = m_questions.dequeue();
    Q_EMIT changed();
    answered.promise->addResult(button);
    answered.promise->finish();
}
