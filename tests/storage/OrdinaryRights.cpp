#include "OrdinaryRights.h"

#include <linux/capability.h>
#include <linux/securebits.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

void dropRightsOfTheSuperuser()
{
    // A program that he starts would have them again. Whoever isn't the superuser can't set this,
    // and need not.
    prctl(PR_SET_SECUREBITS, SECBIT_NOROOT | SECBIT_NOROOT_LOCKED, 0, 0, 0);
    // The superuser without any of his privileges is an ordinary owner of his files.
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct nothing[_LINUX_CAPABILITY_U32S_3] = {};
    if (syscall(SYS_capset, &header, nothing) != 0)
        qFatal("could not drop the rights of the superuser");
}

ReducedPermissions::ReducedPermissions(const QString &path, QFile::Permissions permissions)
    : mPath(path)
    , mBefore(QFile::permissions(path))
{
    if (!QFile::setPermissions(path, permissions))
        qFatal("could not change the permissions of %s", qPrintable(path));
}

ReducedPermissions::~ReducedPermissions()
{
    QFile::setPermissions(mPath, mBefore);
}
