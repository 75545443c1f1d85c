/// What the library shows to its hosts: everything else stays hidden in the shared object.
#pragma once

#if defined(_WIN32) && !defined(MXFZELM_STATIC)
#if defined(MXFZELM_BUILDING)
#define MXFZELM_EXPORT __declspec(dllexport)
#else
#define MXFZELM_EXPORT __declspec(dllimport)
#endif
#define MXFZELM_EXPORT_TEMPLATE
#elif defined(_WIN32)
#define MXFZELM_EXPORT
#define MXFZELM_EXPORT_TEMPLATE
#else
#define MXFZELM_EXPORT __attribute__((visibility("default")))
/// For class templates: their type information must be one across shared objects.
#define MXFZELM_EXPORT_TEMPLATE __attribute__((visibility("default")))
#endif
