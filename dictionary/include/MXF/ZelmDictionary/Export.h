/// What the dictionary component shows to its hosts.
#pragma once

#if defined(_WIN32) && !defined(MXFZELM_STATIC)
#if defined(MXFZELM_DICTIONARY_BUILDING)
#define MXFZELM_DICTIONARY_EXPORT __declspec(dllexport)
#else
#define MXFZELM_DICTIONARY_EXPORT __declspec(dllimport)
#endif
#elif defined(_WIN32)
#define MXFZELM_DICTIONARY_EXPORT
#else
#define MXFZELM_DICTIONARY_EXPORT __attribute__((visibility("default")))
#endif
