#include "analysis/VLMEAnalysisUpgrade.h"

unsigned char VLMEAnalysisUpgrade::NeedToUpgrade() { return 0; }
HRESULT VLMEAnalysisUpgrade::Upgrade() { return E_FAIL; }
