#include "Callable.h"
#include "TestMain.h"

#include "TVLDialogProgress.h"
#include "TVLDoors.h"
#include "TVLMessageBox.h"
#include "TVLReplay.h"

/** What a program can call of the doors between the library and the world. */
class TstPlatformInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeIdentitiesAndChance();
    void replays();
    void messagesOfEntities();
    void otherMessages();
    void progress();
};

void TstPlatformInterface::timeIdentitiesAndChance()
{
    areCallable([] {
        gives<QDateTime>(tvlNow());
        gives<QUuid>(tvlNewUuid());
        gives<quint32>(tvlRandom());
        gives<quint32>(tvlRandom(6));
    });
}

void TstPlatformInterface::replays()
{
    areCallable([](const QDateTime &time) {
        const TVLReplay fixed(1);
        TVLReplay replay(1, time);
        replay.setNow(time);
        replay.advance(1000);
        replay.setStep(1);
    });
}

void TstPlatformInterface::messagesOfEntities()
{
    areCallable([](QWidget *parent, const QString &text) {
        using Box = TVLMessageBox;
        using Button = QMessageBox::StandardButton;
        const Box::Entity entities[] = {
            Box::ProjectEntity,
            Box::DirectoryEntity,
            Box::FileEntity,
            Box::CompileSettingsEntity,
            Box::ExportedCompileSettingsEntity,
            Box::ApplicationSettingsEntity,
            Box::TemplateEntity,
        };
        const Button ok = QMessageBox::Ok;
        for (const Box::Entity entity : entities) {
            gives<Button>(Box::confirmOverwrite(parent, entity, text, ok, ok));
            gives<Button>(Box::confirmRemove(parent, entity, text, ok, ok));
            gives<Button>(Box::confirmReset(parent, entity, ok, ok));
            gives<Button>(Box::couldNotCreate(parent, entity, text, ok, ok));
            gives<Button>(Box::couldNotOpen(parent, entity, text, ok, ok));
            gives<Button>(Box::couldNotOpenForWrite(parent, entity, text, text, ok, ok));
            gives<Button>(Box::couldNotWrite(parent, entity, text, text, text, ok, ok));
            gives<Button>(Box::couldNotRead(parent, entity, text, ok, ok));
            gives<Button>(Box::couldNotRemove(parent, entity, text, ok, ok));
            gives<Button>(Box::incompatible(parent, entity, text, ok, ok));
            gives<Button>(Box::entityNeedsUpdating(parent, entity, text, ok, ok));
        }
    });
}

void TstPlatformInterface::otherMessages()
{
    areCallable([](QWidget *parent, const QString &text, bool *checked) {
        using Button = QMessageBox::StandardButton;
        const TVLMessageBox base(parent);
        TVLMessageBox box(QMessageBox::Warning, text, text);
        gives<Button>(TVLMessageBox::tavelinorNeedsUpdating(parent, text));
        gives<bool>(TVLMessageBox::isProjectContents(text, parent, text, text));
        gives<Button>(TVLMessageBox::execCheckedMessageBox(&box, text, checked));
        gives<Button>(TVLMessageBox::showMessageBox(parent, text, text, text, QMessageBox::Warning,
                                                    QMessageBox::Ok, QMessageBox::Ok, text,
                                                    checked));
    });
}

void TstPlatformInterface::progress()
{
    areCallable([](QProgressDialog *dialog, QWidget *parent, TVLProgress *progress) {
        const TVLProgress nothing;
        const TVLDialogProgress ofTheCaller(dialog);
        const TVLDialogProgress::Look look = {.title = QString(),
                                              .cancelText = QString(),
                                              .modality = Qt::WindowModal,
                                              .flags = Qt::WindowTitleHint,
                                              .isShownAtOnce = true};
        const TVLDialogProgress own(look, parent);
        gives<std::unique_ptr<TVLProgress>>(TVLDialogProgress::make(true, look, parent));
        gives<std::unique_ptr<TVLProgress>>(TVLProgress::madeByMaker());
        TVLProgress::setMaker([] { return std::make_unique<TVLProgress>(); });
        progress->begin(QString(), 1);
        progress->advance();
        progress->advance(2);
        gives<bool>(progress->isCanceled());
        progress->finish();
    });
}

TVL_TEST(TstPlatformInterface)
#include "tst_platforminterface.moc"
