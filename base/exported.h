// What a program may use of the engine when that is a shared library.
#pragma once

/// Stands in the namespace of a public header: `namespace KELMO_API kelmo {`. What is declared
/// there can be called from outside libkelmo; everything else of the engine is hidden.
#define KELMO_API [[gnu::visibility("default")]]
