#pragma once

// The few functions of macOS's Core Foundation that this program calls, declared as the system
// declares them, so that what is compiled for macOS only is compiled elsewhere too. What stands
// behind them in tests is in StandInCoreFoundation.

extern "C" {

using CFTypeRef = const void *;
using CFPropertyListRef = CFTypeRef;
using CFTypeID = unsigned long;
using Boolean = unsigned char;
using CFStringRef = const struct __CFString *;
using CFDataRef = const struct __CFData *;
using CFBundleRef = struct __CFBundle *;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID();
CFTypeID CFDataGetTypeID();

CFBundleRef CFBundleGetMainBundle();
/// What it gives belongs to the bundle.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);

extern const CFStringRef kCFPreferencesCurrentApplication;
/// What it gives belongs to the caller.
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);
/// No value removes the key.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application);
Boolean CFPreferencesAppSynchronize(CFStringRef application);
}
