#pragma once

enum RaisingPlace { RaiseNowhere, RaiseInLoad, RaiseInGetTable };

/// What the document model raises.
struct HostError {
    RaisingPlace Place;
};

/// From now on the document model raises a HostError there.
extern "C" void RaiseAt(RaisingPlace place);
