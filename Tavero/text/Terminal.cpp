#include "text/Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <string_view>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tavero {

namespace {

constexpr std::string_view enterScreen = "\x1b[?1049h\x1b[?25l"; // another screen, no cursor
constexpr std::string_view leaveScreen = "\x1b[?25h\x1b[?1049l";
constexpr std::string_view home = "\x1b[H";
constexpr std::string_view clearLine = "\x1b[K";
constexpr std::string_view clearBelow = "\x1b[J";
constexpr int unknownColumns = 80;

// Signals arrive at any instruction, so their handler only passes them on to the event loop.
std::array<int, 2> signalPipe{-1, -1};

void passOn(int signal) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t ignored = write(signalPipe[1], &byte, 1);
    errno = error;
}

bool writeAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<winsize> windowSize() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
    return size;
}

} // namespace

Terminal::Terminal() : isInteractive_(isatty(STDIN_FILENO) && isatty(STDOUT_FILENO)) {
    if (!isInteractive_ || tcgetattr(STDIN_FILENO, &original_) != 0 ||
        pipe(signalPipe.data()) != 0) {
        isInteractive_ = false;
        return;
    }
    for (const int end : signalPipe) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    struct sigaction action {};
    action.sa_handler = passOn;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGTSTP, SIGWINCH})
        sigaction(signal, &action, nullptr);

    keys_.emplace(STDIN_FILENO, QSocketNotifier::Read);
    connect(&*keys_, &QSocketNotifier::activated, this, &Terminal::readKeys);
    signals_.emplace(signalPipe[0], QSocketNotifier::Read);
    connect(&*signals_, &QSocketNotifier::activated, this, &Terminal::readSignals);
    enter();
}

Terminal::~Terminal() { leave(); }

bool Terminal::isColored() const { return isInteractive_ && !std::getenv("NO_COLOR"); }

int Terminal::columns() const {
    const std::optional<winsize> size = windowSize();
    return size ? size->ws_col : unknownColumns;
}

void Terminal::show(const std::vector<std::string>& lines) {
    std::string picture;
    if (isInteractive_) {
        const std::optional<winsize> size = windowSize();
        const std::size_t rows = size && size->ws_row > 0 ? size->ws_row : lines.size();
        picture += home;
        for (std::size_t i = 0; i < lines.size() && i < rows; ++i) {
            if (i > 0) picture += "\r\n";
            picture += lines[i];
            picture += clearLine;
        }
        picture += clearBelow;
    } else {
        for (const std::string& line : lines) picture += line + "\n";
        picture += "\n";
    }
    // Whoever read the output has gone.
    if (!writeAll(picture)) emit endRequested();
}

void Terminal::enter() {
    termios keysAtOnce = original_;
    keysAtOnce.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &keysAtOnce);
    writeAll(enterScreen);
    isEntered_ = true;
}

void Terminal::leave() {
    if (!isEntered_) return;
    isEntered_ = false;
    writeAll(leaveScreen);
    tcsetattr(STDIN_FILENO, TCSANOW, &original_);
}

// Ctrl-Z: the shell gets its screen back, and we get ours when it continues us.
void Terminal::suspend() {
    leave();
    kill(getpid(), SIGSTOP);
    enter();
    emit resized();
}

void Terminal::readKeys() {
    std::array<char, 64> keys{};
    const ssize_t count = read(STDIN_FILENO, keys.data(), keys.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count <= 0) {
        keys_->setEnabled(false);
        emit endRequested();
        return;
    }
    const std::string_view typed(keys.data(), static_cast<std::size_t>(count));
    // The keys that aren't letters send several characters, an escape first.
    if (typed.front() == '\x1b') return;
    for (const char key : typed) {
        if (std::string_view("qQ\x04").find(key) != std::string_view::npos)
            emit endRequested();
        else
            emit keyPressed(key);
    }
}

void Terminal::readSignals() {
    unsigned char signal = 0;
    while (read(signalPipe[0], &signal, 1) == 1) {
        if (signal == SIGWINCH)
            emit resized();
        else if (signal == SIGTSTP)
            suspend();
        else
            emit endRequested();
    }
}

} // namespace tavero
