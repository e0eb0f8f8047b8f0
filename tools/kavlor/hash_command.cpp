#include "command.h"
#include "console.h"

#include <cstdio>
#include <norvakavlor/crypto/encryption.h>

namespace norvakavlor::kavlor {
namespace {

std::string askPassword(const char* prompt) {
    std::fputs(prompt, stderr);
    std::optional<std::string> password;
    {
        const EchoOff silence;
        password = readLine();
    }
    std::fputc('\n', stderr);
    if (!password)
        throw Failure("no password was given");
    return *password;
}

int hash() {
    std::string password;
    if (isTerminal(Stream::Input)) {
        password = askPassword("Password: ");
        if (askPassword("The same again: ") != password)
            throw Failure("the two are not the same");
    } else if (const auto line = readLine()) {
        password = *line;
    }
    if (password.empty())
        throw Failure("an empty password is none: leave the digest out instead");
    std::printf("%s\n", New<Encryption>()->Encrypt(password).c_str());
    return kWell;
}

} // namespace

extern const Command kHash;
const Command kHash{
    "hash", "Print the digest that documents store for a password",
    "The password is read from the terminal, where it is not shown, or from the first line of the standard\n"
    "input. It is never an argument: other users of the machine could read those.\n\n"
    "Example: kavlor hash < password.txt",
    [](Arguments&) -> std::function<int()> { return hash; }};

} // namespace norvakavlor::kavlor
