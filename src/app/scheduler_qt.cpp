#include "app/scheduler_qt.h"

#include <QPointer>
#include <QTimer>

namespace vantle {
namespace {

class QtScheduledCall final : public ScheduledCall {
public:
    explicit QtScheduledCall(QTimer* timer) : timer_(timer) {}
    void cancel() override {
        if (timer_) {
            timer_->stop();
            timer_->deleteLater();
        }
    }

private:
    // The timer deletes itself once it fired, which clears this pointer.
    QPointer<QTimer> timer_;
};

}  // namespace

std::shared_ptr<ScheduledCall> QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> call) {
    auto* timer = new QTimer();
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, call = std::move(call)] {
        timer->deleteLater();
        call();
    });
    timer->start(delay);
    return std::make_shared<QtScheduledCall>(timer);
}

}  // namespace vantle
