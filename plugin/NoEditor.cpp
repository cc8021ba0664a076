// Stands in for the editor where the library is built without one.
#include "plugin/EditorFactory.h"

EditorFactory editorFactory ()
{
    return nullptr;
}
