#pragma once

// Placeholder until the editor's undo history lands.
class UndoHistory
{
public:
    bool RegistraUndo = false;
};
