#pragma once

#include "framework/base/Ref.h"

class Window;
struct Activation;

// The open windows, and their side of a quit. For the framework's sources. Main thread.
class WindowList {
public:
    static Ref<Window> InFront(); // nil if none of ours is
    // Brings the program forward: its windows in the order in which they stood, those that are minimised left alone
    // but for the main one.
    static void BringToFront(const Activation& activation);

    static void Add(const Ref<Window>& window);
    static void Remove(const Ref<Window>& window);

    // A window waits for the user's word about its close.
    static bool AnyIsAsking();
    // Asks the windows whether they let the program end, the front one first, until one refuses.
    static bool Refuse();
    // Closes all of them without a further question.
    static void Close();
};
