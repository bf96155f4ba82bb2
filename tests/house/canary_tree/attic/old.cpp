// A folder that nobody announced.
