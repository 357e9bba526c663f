// Nothing: a library with the agent's name and none of its functions.
