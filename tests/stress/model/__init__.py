"""A second, simple model of what the commands that change a host promise, made of dictionaries and lists."""
