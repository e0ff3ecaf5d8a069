#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace pg {

// Icons of a message, as the program's message boxes show them.
enum class Icon { None, Critical, Question, Exclamation, Information };

// Button sets of a message box.
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };

// The button the user pressed.
enum class Answer { Ok, Cancel, Yes, No, Retry };

// One message or question: what the program wants to tell or ask, independent of how it is
// shown. An empty title means the program's own name ("Pagamenti"), as every box without a
// title of its own shows it.
struct Message
{
    QString text;
    QString title;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    // The button the box proposes (Enter presses it); unset, the first one. A question whose
    // Yes destroys something proposes No.
    std::optional<Answer> proposed;
    // Escape, and closing the box's window, answer Cancel even where the box shows no Cancel
    // button: the clerk withdraws the question instead of answering it.
    bool escapeCancels = false;
};

// Thrown by the prompters that do not end the process for real (the scripted one of the
// tests): the code under test unwinds as if the process had ended there.
struct ProcessEnded
{
    int exitCode = 0;
};

// The one seam through which business logic talks to the user and ends the process.
// The desktop program shows message boxes, the command line writes to standard error,
// the tests answer from a script. Logic never touches widgets or calls exit() itself.
class Prompter
{
public:
    virtual ~Prompter() = default;

    virtual Answer ask(const Message &message) = 0;

    // Ends the process at once, without running anything else of the program.
    [[noreturn]] virtual void endProcess(int exitCode) = 0;

    static QString programName() { return QStringLiteral("Pagamenti"); }
};

// The prompter in use; the standard-error one until another is installed.
Prompter &prompter();

// Installs a prompter for the life of the returned guard; the previous one comes back after.
class PrompterScope
{
public:
    explicit PrompterScope(Prompter &replacement);
    ~PrompterScope();
    PrompterScope(const PrompterScope &) = delete;
    PrompterScope &operator=(const PrompterScope &) = delete;

private:
    Prompter *m_previous;
};

// Short forms used throughout the program.
Answer msgBox(const QString &text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
              const QString &title = {});
[[noreturn]] void endProcess(int exitCode = 0);
// A Yes/No question whose Yes destroys or changes what cannot be taken back: No is proposed.
Answer askDestructive(const QString &text);

} // namespace pg
