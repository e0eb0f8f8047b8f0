#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <norvakavlor/text/error.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The terminal, the streams, and what else differs between the systems. Texts are UTF-8.
namespace norvakavlor::kavlor {

/// Makes the first Ctrl-C a wish that checkInterrupted sees (a second one ends the program at once), and the
/// console ready for UTF-8 and colours.
void prepareConsole();
/// The arguments without the program's name; on Windows the whole of Unicode, whatever the code page.
std::vector<std::string> commandLine(int count, char** arguments);

enum class Stream { Input, Output, Error };
bool isTerminal(Stream stream);

/// Ctrl-C was pressed. Raised only where nothing is half done.
class Interrupted : public std::exception {};
/// Raises Interrupted after a Ctrl-C.
void checkInterrupted();

/// Keeps what is typed from the terminal while it lives.
class EchoOff {
public:
    EchoOff();
    ~EchoOff();
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    bool changed_ = false;
};

/// When a file's attributes last changed, as local time "2026-11-26 09:02"; nothing where the system does not
/// keep that.
std::optional<std::string> attributesChanged(const std::string& path);
/// When its content last changed.
std::optional<std::string> contentChanged(const std::string& path);

// What follows is the same everywhere.

std::filesystem::path pathFrom(std::string_view text);
std::string pathText(const std::filesystem::path& path);

enum class Tone { Good, Fair, Low, Faint, Strong };
/// The text in a colour when the output is a terminal that shows colours; else as it is.
std::string inTone(Tone tone, const std::string& text);
/// A document's text for a terminal: control characters, which could command it, become blanks.
std::string plain(std::string_view text);
/// A bar of `width` cells, filled by a share from 0 to 1.
std::string bar(double share, size_t width);

/// The next line of the standard input without its end; nothing at its end.
std::optional<std::string> readLine();
/// A question that yes answers; anything else is no. Raises Failure when there is no terminal to ask on.
bool confirm(const std::string& question);

/// "reading attempts 1,200 of 20,000" on a terminal's error stream, and nothing anywhere else.
class Progress {
public:
    Progress(std::string what, size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// One more is done. Raises Interrupted after a Ctrl-C.
    void step();
    /// The same where what has begun must be finished.
    void count();

private:
    void show() const;

    std::string what_;
    size_t total_;
    size_t done_ = 0;
    bool shown_;
};

/// "1,200"
std::string grouped(size_t number);
/// "1 student", "3 students"
std::string counted(size_t number, const std::string& one, const std::string& many);
/// What an error of the library says, with its number.
std::string describe(const Error& error);

} // namespace norvakavlor::kavlor
