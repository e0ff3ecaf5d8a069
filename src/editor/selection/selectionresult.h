#pragma once

#include <QString>

namespace pg::editor {

// What the selection dialog of due items hands back when it is confirmed (mark "X"): the
// company bank and agency of the presentation (five characters each) and the creation and
// value dates as typed ("__/__/____" when left empty).
struct SelectionResult
{
    QString banca;
    QString agenzia;
    QString dataCreazione;
    QString dataValuta;
};

} // namespace pg::editor
