#include "TvlCore.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>
#endif

namespace {

/** The name in the account database, without office and telephone; empty when there is none. */
QString accountFullName()
{
#ifdef Q_OS_UNIX
    std::vector<char> buffer(1024);
    passwd account;
    passwd *found = nullptr;
    while (getpwuid_r(getuid(), &account, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(buffer.size() * 2);
    if (found && found->pw_gecos)
        return QString::fromLocal8Bit(found->pw_gecos).section(u',', 0, 0).trimmed();
#endif
    return {};
}

} // namespace

QString TvlCore::systemUsernameEnv()
{
    for (const char *variable : {"USER", "LOGNAME", "USERNAME"}) {
        const QString name = qEnvironmentVariable(variable);
        if (!name.isEmpty())
            return name;
    }
    return {};
}

QString TvlCore::systemUsername()
{
    const QString fullName = accountFullName();
    return fullName.isEmpty() ? systemUsernameEnv() : fullName;
}
