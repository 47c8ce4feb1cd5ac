#pragma once

// Every class of exception that scripts may see.

#include "omu_AccessErrorException.h"
#include "omu_ArgNumberErrorException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_AttributeErrorException.h"
#include "omu_BreNameErrorException.h"
#include "omu_ColorErrorException.h"
#include "omu_FontErrorException.h"
#include "omu_GenericTypeErrorException.h"
#include "omu_IndexErrorException.h"
#include "omu_KeyErrorException.h"
#include "omu_KeywordErrorException.h"
#include "omu_KeywordTypeErrorException.h"
#include "omu_NameErrorException.h"
#include "omu_OverflowErrorException.h"
#include "omu_RangeErrorException.h"
#include "omu_ValueErrorException.h"
#include "omu_ZeroDivisionErrorException.h"
