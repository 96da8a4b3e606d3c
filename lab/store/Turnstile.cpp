#include "lab/store/Turnstile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "lab/base/Text.h"
#include "lab/store/Patience.h"

namespace lab {
namespace {

/// SQLite's locks are on the 512 bytes before.
constexpr off_t kEnter = 0x40000200;
constexpr off_t kServed = kEnter + 1;

flock LockOf(off_t place, short type) {
  flock lock{};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = place;
  lock.l_len = 1;
  return lock;
}

/// Interrupts the system call that this thread waits in, once the time is over, until its end.
class Alarm {
 public:
  explicit Alarm(Waiting time) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(kSignal, &action, &before_);
    sigevent event{};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = kSignal;
    event._sigev_un._tid = gettid();
    isSet_ = timer_create(CLOCK_MONOTONIC, &event, &timer_) == 0;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    itimerspec setting{};
    setting.it_value = {seconds.count(), (time - seconds).count() + 1};
    // Again and again: the first one may come just before the call.
    setting.it_interval = {0, 10'000'000};
    if (isSet_) timer_settime(timer_, 0, &setting, nullptr);
  }
  ~Alarm() {
    if (isSet_) timer_delete(timer_);
    sigaction(kSignal, &before_, nullptr);
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

 private:
  // Whoever completes words has SIGALRM.
  static inline const int kSignal = SIGRTMIN + 5;

  struct sigaction before_ {};
  timer_t timer_{};
  bool isSet_ = false;
};

/// False when the patience ends first.
bool Lock(const File& file, off_t place, short type) {
  flock lock = LockOf(place, type);
  if (fcntl(file.Get(), F_OFD_SETLK, &lock) == 0) return true;
  if (errno != EAGAIN && errno != EACCES) Fail("cannot lock the lab: ", ErrorText(errno));
  const WaitingTime waiting;
  const Waiting left = PatienceLeft();
  const auto end = std::chrono::steady_clock::now() + left;
  const Alarm alarm(left);
  do {
    if (fcntl(file.Get(), F_OFD_SETLKW, &lock) == 0) return true;
    if (errno != EINTR) Fail("cannot lock the lab: ", ErrorText(errno));
  } while (std::chrono::steady_clock::now() < end);
  return false;
}

void Unlock(const File& file, off_t place) noexcept {
  flock lock = LockOf(place, F_UNLCK);
  fcntl(file.Get(), F_OFD_SETLK, &lock);
}

}  // namespace

Turnstile::Turnstile(const std::string& path) : path_(path) {
  file_ = OpenFile(path, MayChange() ? O_RDWR | O_CREAT : O_RDONLY);
  isWritable_ = file_.IsOpen() && MayChange();
  if (!file_.IsOpen() && (errno == EACCES || errno == EROFS)) file_ = OpenFile(path, O_RDONLY);
  if (!file_.IsOpen() && errno == EISDIR) FailNotFile(path);
  if (!file_.IsOpen()) Fail("cannot open the lab ", Quoted(path), ": ", ErrorText(errno));
}

void Turnstile::Enter(Access access) {
  // A descriptor that only reads can hold no lock of its own; who reads lets others in anyway.
  const short alone = isWritable_ ? F_WRLCK : F_RDLCK;
  if (!Lock(file_, kEnter, alone)) FailBusy(path_);
  const bool isServed = Lock(file_, kServed, access == Access::Read ? short{F_RDLCK} : alone);
  Unlock(file_, kEnter);
  if (!isServed) FailBusy(path_);
}

void Turnstile::Leave() noexcept { Unlock(file_, kServed); }

}  // namespace lab
