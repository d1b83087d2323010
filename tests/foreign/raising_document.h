#pragma once

enum RaisingPlace { RaiseNowhere, RaiseInLoad, RaiseInGetTable, FaultInLoad, FaultInGetTable };

/// What the document model raises.
struct HostError {
    RaisingPlace Place;
};

/// From now on the document model raises a HostError there, or the structured exception of a write through null.
extern "C" void RaiseAt(RaisingPlace place);
