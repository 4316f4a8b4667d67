"""What the tests share. The harbour is a copy, which a test may change."""
import shutil
from pathlib import Path

import pytest

EXAMPLES = Path(__file__).parents[3] / "examples"


@pytest.fixture
def harbour(tmp_path: Path) -> Path:
    return Path(shutil.copy(EXAMPLES / "harbour.zon", tmp_path))
