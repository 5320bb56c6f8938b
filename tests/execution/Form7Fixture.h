#pragma once
// The register's fixture under its former name, for the tests not yet on the kit, with
// the services their files reach through it.
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/OpenFile.h"
#include "shell/Driver.h"
#include "store/DataStore.h"
#include "support/RegisterTest.h"
using Form7Fixture = RegisterTest;
