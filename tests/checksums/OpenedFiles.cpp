#include "OpenedFiles.h"

#include <QFile>

#include <array>
#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

OpenedFiles::OpenedFiles(const QStringList &folders)
    : mNotifier(inotify_init1(IN_NONBLOCK))
{
    for (const QString &folder : folders) {
        const int watch = inotify_add_watch(mNotifier, QFile::encodeName(folder), IN_OPEN);
        if (watch < 0)
            qFatal("the folder %s can't be watched", qPrintable(folder));
        mFolders.insert(watch, folder);
    }
}

OpenedFiles::~OpenedFiles()
{
    ::close(mNotifier);
}

OpenedFiles::Paths OpenedFiles::take()
{
    Paths opened;
    std::array<char, 65536> buffer = {};
    // All that has happened is in the queue already: the system puts it there on opening.
    for (ssize_t size = 0; (size = ::read(mNotifier, buffer.data(), buffer.size())) > 0;) {
        for (const char *at = buffer.data(); at < buffer.data() + size;) {
            inotify_event event = {};
            std::memcpy(&event, at, sizeof(event));
            const char *name = at + sizeof(event);
            const QString folder = mFolders.value(event.wd);
            if (!(event.mask & IN_ISDIR))
                opened.files.append(folder + u'/' + QFile::decodeName(name));
            else if (event.len == 0)
                opened.folders.append(folder);
            at = name + event.len;
        }
    }
    return opened;
}
