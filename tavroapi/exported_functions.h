#pragma once

#include "tavroapi/entry_points.h"

// The entry points as a library exports them: for a library that defines them, and for what is
// linked with one. The program loads its library at run time and has no use for them.
extern "C" {

tavroapi::InitializeEntry::Function TAVROAPI_Initialize;
tavroapi::UninitializeEntry::Function TAVROAPI_Uninitialize;
tavroapi::DoOperationEntry::Function TAVROAPI_DoOperation;
tavroapi::GetLocalizeMessageEntry::Function TAVROAPI_GetLocalizeMessage;
tavroapi::GetLastErrorMessageEntry::Function TAVROAPI_GetLastErrorMessage;
tavroapi::GetHostNameEntry::Function TAVROAPI_GetHostName;
tavroapi::GetDiscoveredAdaptersEntry::Function TAVROAPI_GetDiscoveredAdapters;
tavroapi::GetPortWWNsEntry::Function TAVROAPI_GetPortWWNs;
tavroapi::GetPartitionStateEntry::Function TAVROAPI_GetPartitionState;
tavroapi::GetAdapterTypeEntry::Function TAVROAPI_GetAdapterType;
tavroapi::GetAdapterPortNumberEntry::Function TAVROAPI_GetAdapterPortNumber;

}  // extern "C"
