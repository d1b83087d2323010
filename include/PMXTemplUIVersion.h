/* Written by CMake from the version of the project. */
#ifndef PMXTEMPLUIVERSION_H
#define PMXTEMPLUIVERSION_H

#define PMX_VERSION "1.0.0"
#define PMX_VERSION_MAJOR 1
#define PMX_VERSION_MINOR 0
#define PMX_VERSION_PATCH 0

#endif
