#include "LockFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

void writeIdentity(const QUuid &id)
{
    QFile file(identityPath());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write %s", qPrintable(identityPath()));
    QDataStream stream(&file);
    stream << id;
}

} // namespace

/** The identity is read once in a process, so these tests are one story and need their own. */
class TstLockIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileThatCannotBeOpenedGivesANullIdentity();
    void anIdentityThatExistsIsReadAndLeftAlone();
    void theIdentityIsNotReadAgain();
};

void TstLockIdentity::aFileThatCannotBeOpenedGivesANullIdentity()
{
    QVERIFY(QDir().mkpath(identityPath()));
    for (int pass = 0; pass < 2; ++pass) {
        QTest::ignoreMessage(
            QtDebugMsg,
            QRegularExpression(u"^Could not open userlock.id file: \"?%1\"?$"_s.arg(
                QRegularExpression::escape(identityPath()))));
        QVERIFY(Format::userLockId().isNull());
    }
    QVERIFY(QDir().rmdir(identityPath()));
}

void TstLockIdentity::anIdentityThatExistsIsReadAndLeftAlone()
{
    const QUuid id = QUuid::createUuid();
    writeIdentity(id);
    QCOMPARE(Format::userLockId(), id);
    QFile file(identityPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.size(), 16);
    QUuid stored;
    QDataStream stream(&file);
    stream >> stored;
    QCOMPARE(stored, id);
}

void TstLockIdentity::theIdentityIsNotReadAgain()
{
    const QUuid id = Format::userLockId();
    QVERIFY(!id.isNull());
    writeIdentity(QUuid::createUuid());
    QCOMPARE(Format::userLockId(), id);
    QVERIFY(QFile::remove(identityPath()));
    QCOMPARE(Format::userLockId(), id);
    QVERIFY(!QFile::exists(identityPath()));
}

TVL_TEST(TstLockIdentity)
#include "tst_lockidentity.moc"
