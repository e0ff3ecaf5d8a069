#include "templatemerge.h"

#include "mergefield.h"

namespace pg::printing {

struct TemplateMerge::Node
{
    enum class Kind { Root, Text, Field, Section };
    Kind kind = Kind::Root;
    QString text; // the text, or the field or section name
    bool inverted = false;
    int line = 0;
    std::vector<std::unique_ptr<Node>> children;
};

namespace {

using Node = TemplateMerge::Node;

const QString Open = QStringLiteral("{{");
const QString Close = QStringLiteral("}}");

QString tag(const QString &prefix, const QString &name)
{
    return Open + prefix + name + Close;
}

class Parser
{
public:
    Parser(const QString &text, QStringList &problems) : m_text(text), m_problems(problems) {}

    std::unique_ptr<Node> parse()
    {
        auto root = std::make_unique<Node>();
        std::vector<Node *> open{root.get()};
        qsizetype pos = 0;
        while (pos < m_text.size()) {
            const qsizetype start = m_text.indexOf(Open, pos);
            if (start < 0) {
                addText(open.back(), m_text.mid(pos));
                break;
            }
            addText(open.back(), m_text.mid(pos, start - pos));
            const qsizetype end = m_text.indexOf(Close, start + Open.size());
            const int line = lineAt(start);
            if (end < 0) {
                problem(line, QStringLiteral("\"{{\" senza la chiusura \"}}\""));
                break;
            }
            pos = end + Close.size();
            const QString inside = m_text.mid(start + Open.size(), end - start - Open.size());
            tagAt(inside.trimmed(), line, open);
        }
        for (auto it = open.rbegin(); it + 1 != open.rend(); ++it)
            problem((*it)->line,
                    QStringLiteral("il blocco %1 non è chiuso da %2")
                        .arg(tag((*it)->inverted ? QStringLiteral("^") : QStringLiteral("#"),
                                 (*it)->text),
                             tag(QStringLiteral("/"), (*it)->text)));
        return root;
    }

private:
    void tagAt(const QString &inside, int line, std::vector<Node *> &open)
    {
        const QChar sigil = inside.isEmpty() ? QChar() : inside.front();
        if (sigil == u'#' || sigil == u'^') {
            const QString name = inside.mid(1).trimmed();
            auto node = std::make_unique<Node>();
            node->kind = Node::Kind::Section;
            node->text = name;
            node->inverted = sigil == u'^';
            node->line = line;
            checkSection(name, sigil, line, open);
            Node *raw = node.get();
            open.back()->children.push_back(std::move(node));
            open.push_back(raw);
        } else if (sigil == u'/') {
            const QString name = inside.mid(1).trimmed();
            if (open.size() > 1 && open.back()->text == name)
                open.pop_back();
            else if (open.size() > 1)
                problem(line, QStringLiteral("%1 chiude un blocco diverso da quello aperto, %2")
                                  .arg(tag(QStringLiteral("/"), name),
                                       tag(QStringLiteral("#"), open.back()->text)));
            else
                problem(line, QStringLiteral("%1 chiude un blocco che non è aperto")
                                  .arg(tag(QStringLiteral("/"), name)));
        } else {
            checkField(inside, line, open);
            auto node = std::make_unique<Node>();
            node->kind = Node::Kind::Field;
            node->text = inside;
            node->line = line;
            open.back()->children.push_back(std::move(node));
        }
    }

    void checkSection(const QString &name, QChar sigil, int line, const std::vector<Node *> &open)
    {
        const MergeField *field = MergeField::find(name);
        if (!field) {
            problem(line, QStringLiteral("blocco sconosciuto %1").arg(tag(QString(sigil), name)));
        } else if (field->scope != MergeField::Scope::Sezione) {
            problem(line, QStringLiteral("%1 è un campo, non un blocco: va scritto %2")
                              .arg(tag(QString(sigil), name), tag({}, name)));
        } else if (name == MergeField::rowSection() && insideRows(open)) {
            problem(
                line,
                QStringLiteral("%1 dentro un altro blocco %1").arg(tag(QStringLiteral("#"), name)));
        }
    }

    void checkField(const QString &name, int line, const std::vector<Node *> &open)
    {
        const MergeField *field = MergeField::find(name);
        if (!field) {
            problem(line, QStringLiteral("campo sconosciuto %1").arg(tag({}, name)));
        } else if (field->scope == MergeField::Scope::Sezione) {
            problem(line, QStringLiteral("%1 è un blocco: va scritto %2 ... %3")
                              .arg(tag({}, name), tag(QStringLiteral("#"), name),
                                   tag(QStringLiteral("/"), name)));
        } else if (field->scope == MergeField::Scope::Riga && !insideRows(open)) {
            problem(line,
                    QStringLiteral("%1 è un campo di riga: va usato dentro %2 ... %3")
                        .arg(tag({}, name), tag(QStringLiteral("#"), MergeField::rowSection()),
                             tag(QStringLiteral("/"), MergeField::rowSection())));
        }
    }

    static bool insideRows(const std::vector<Node *> &open)
    {
        for (const Node *node : open)
            if (node->kind == Node::Kind::Section && !node->inverted &&
                node->text == MergeField::rowSection())
                return true;
        return false;
    }

    static void addText(Node *parent, const QString &text)
    {
        if (text.isEmpty())
            return;
        auto node = std::make_unique<Node>();
        node->kind = Node::Kind::Text;
        node->text = text;
        parent->children.push_back(std::move(node));
    }

    int lineAt(qsizetype offset)
    {
        // Offsets only grow while parsing: count on from the last one.
        m_line += int(QStringView(m_text).mid(m_counted, offset - m_counted).count(u'\n'));
        m_counted = offset;
        return m_line;
    }

    void problem(int line, const QString &text)
    {
        m_problems << QStringLiteral("riga %1: %2").arg(line).arg(text);
    }

    const QString &m_text;
    QStringList &m_problems;
    int m_line = 1;
    qsizetype m_counted = 0;
};

// Where a split merge stands: the parts written so far and the rows sections met.
struct SplitState
{
    QString *current;
    QString rowBody;
    QString after;
    int rowSections = 0;
};

void render(const Node &node, const MergeData &data, const QHash<QString, QString> *row,
            QString &out, SplitState *split = nullptr)
{
    switch (node.kind) {
    case Node::Kind::Text:
        out += node.text;
        return;
    case Node::Kind::Field: {
        if (split && &out == &split->rowBody && !data.fields.contains(node.text)) {
            out += TemplateMerge::rowField(node.text);
            return;
        }
        const auto value =
            row && row->contains(node.text) ? row->value(node.text) : data.fields.value(node.text);
        out += value.toHtmlEscaped();
        return;
    }
    case Node::Kind::Root:
        for (const auto &child : node.children)
            render(*child, data, row, out, split);
        return;
    case Node::Kind::Section:
        break;
    }
    if (node.text == MergeField::rowSection()) {
        if (node.inverted) {
            if (data.rows.isEmpty())
                for (const auto &child : node.children)
                    render(*child, data, row, out, split);
            return;
        }
        if (split) {
            // The body once, with its fields standing in; what follows goes after it.
            ++split->rowSections;
            for (const auto &child : node.children)
                render(*child, data, nullptr, split->rowBody, split);
            split->current = &split->after;
            return;
        }
        for (const QHash<QString, QString> &each : data.rows)
            for (const auto &child : node.children)
                render(*child, data, &each, out);
        return;
    }
    if (data.conditions.value(node.text) != node.inverted)
        for (const auto &child : node.children)
            render(*child, data, row, split && &out != &split->rowBody ? *split->current : out,
                   split);
}

} // namespace

TemplateMerge::TemplateMerge(const QString &templateText)
{
    m_root = Parser(templateText, m_problems).parse();
}

TemplateMerge::~TemplateMerge() = default;
TemplateMerge::TemplateMerge(TemplateMerge &&) noexcept = default;
TemplateMerge &TemplateMerge::operator=(TemplateMerge &&) noexcept = default;

QString TemplateMerge::rowField(const QString &name)
{
    return QChar(0xE000) + name + QChar(0xE001);
}

std::optional<TemplateMerge::Split> TemplateMerge::split(const MergeData &data) const
{
    if (!isValid() || data.rows.isEmpty())
        return std::nullopt;
    Split result;
    SplitState state{&result.before, {}, {}};
    for (const auto &child : m_root->children)
        render(*child, data, nullptr, *state.current, &state);
    if (state.rowSections != 1)
        return std::nullopt;
    result.rowBody = state.rowBody;
    result.after = state.after;
    return result;
}

QString TemplateMerge::merge(const MergeData &data) const
{
    if (!isValid())
        return {};
    QString out;
    render(*m_root, data, nullptr, out);
    return out;
}

} // namespace pg::printing
