#pragma once
// Commands that a started process carries out alone, with what is kept and without a window.

#include <functional>

#include "app/Commands.h"
#include "model/ReceiveSetting.h"

CommandAnswer CarryOutAlone(const Command& command);

// --receive. apply: called with what is set, once it is on the disk.
CommandAnswer SetReceiveFrom(const Command& command, const std::function<void(ReceiveFrom)>& apply);
