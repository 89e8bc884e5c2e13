#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtTest>

/// Base of every test class: a warning that no test announced with expectWarning() fails the test.
class TrelTest : public QObject
{
    Q_OBJECT

protected:
    /// Announces one qWarning with exactly this text; the test fails when it does not come.
    static void expectWarning(const QString &text);
    /// Announces one qDebug line with exactly this text; the test fails when it does not come.
    static void expectDebug(const QString &text);

    /// What each test function begins with. A class that declared init() itself would have no warnings looked at.
    virtual void setUp();
    /// What each test function ends with.
    virtual void tearDown();

private Q_SLOTS:
    void init();
    void cleanup();
};

/// Cases that run in a process of their own, by name: `test --child NAME`. No application object exists there.
using ChildCases = QMap<QString, void (*)()>;

struct ChildResult
{
    bool crashed = false;
    int code = 0; ///< exit code, or the signal when crashed
    QByteArray out;
    QByteArray err;
};

/// Runs case \a name of this test in a fresh process; \a program replaces this test's own executable.
ChildResult runChild(const QString &name, const QString &program = QString());

/// Whether case \a name dies by SIGABRT with \a text on standard error; otherwise prints what it did.
bool diesWith(const QString &name, const QByteArray &text);

/// Runs case \a name if the command line asks for one; returns whether it did.
bool ranChildCase(int argc, char **argv, const ChildCases &cases);

/// Lets no test touch the user's own files, and none need a screen: HOME and the XDG folders become a fresh
/// temporary folder, which goes with the process. TREL_TEST_PLATFORM names a platform of Qt's to draw with instead.
void isolateFromUser();

/// main() of a test with child cases, under an application object of class Application; pass {} where there are none.
#define TREL_TEST_MAIN_WITH(Application, TestClass, childCases)                                                        \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        isolateFromUser();                                                                                             \
        if (ranChildCase(argc, argv, childCases))                                                                      \
            return 0;                                                                                                  \
        Application application(argc, argv);                                                                           \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }

/// The same without pictures.
#define TREL_TEST_MAIN(TestClass, childCases) TREL_TEST_MAIN_WITH(QCoreApplication, TestClass, childCases)
